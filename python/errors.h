// The errors of the Python module: one C++ exception carrying the kind of
// error (which Python class it becomes), the message and the error code, the
// same words the Tcl commands put in -errorcode (first word LAMINATE).
#ifndef LAMINATE_PYTHON_ERRORS_H
#define LAMINATE_PYTHON_ERRORS_H

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>

namespace pylaminate {

// The Python classes, all subclasses of LaminateError (itself a ValueError).
enum class ErrorKind { Laminate, Record, Material, Layup, Loads, Library };

class Error : public std::runtime_error {
public:
    // code: the words after LAMINATE.
    Error(ErrorKind kind, std::string const& message, std::initializer_list<std::string> code);

    ErrorKind kind() const { return kind_; }
    std::vector<std::string> const& code() const { return code_; }

private:
    ErrorKind kind_;
    std::vector<std::string> code_;  // LAMINATE first
};

// Creates the exception classes in module m and translates Error into them.
void registerErrors(pybind11::module_& m);

// Text quoted back in a message: at most 40 bytes, cut on a character, as
// the Tcl commands quote it.
std::string shown(std::string const& text);

}  // namespace pylaminate

#endif
