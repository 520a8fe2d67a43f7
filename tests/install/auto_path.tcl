# Prints the interpreter's auto_path, one folder a line.
puts [join $auto_path \n]
