// The process-wide error writer.  Misuse detected anywhere in the linear-algebra
// layers is composed into errorwriter's error stream and reported through
// WriteErrorAndQuit(), which ends the process with exit status 2.
#ifndef LAMINATE_UTIL_ERRORWRITER_H
#define LAMINATE_UTIL_ERRORWRITER_H

#include <cstdio>
#include <ostream>
#include <streambuf>

// An output stream over a fixed, caller-owned character buffer.  Insertions
// past the end fail (badbit) and are dropped; nothing is ever reallocated.
class FixedBufferStream : public std::ostream {
public:
    FixedBufferStream(char* buffer, int capacity);
    char* str() { return buf_.base(); }     // the buffer itself
    void reset();                            // zero the buffer, rewind, clear state

private:
    class Buf : public std::streambuf {
    public:
        Buf(char* b, int n) : base_(b), n_(n) { rewind(); }
        void rewind() { setp(base_, base_ + n_); }
        char* base() const { return base_; }
    private:
        char* base_;
        int n_;
    };
    Buf buf_;
    int capacity_;
};

class ErrorWriter {
public:
    enum { BufferSize = 2048 };

    ErrorWriter();
    ~ErrorWriter();
    ErrorWriter(const ErrorWriter&) = delete;
    ErrorWriter& operator=(const ErrorWriter&) = delete;

    // Writes the error text to error_file and, with the banner, to screen;
    // then ends the process with exit status 2.  Never returns.
    [[noreturn]] void WriteErrorAndQuit();
    // As above without ending the process; the banner precedes only the first
    // such report of the process.  Clears the error stream.
    void WriteErrorNoQuit();
    // Warning text to warning_file and screen, no banner.  Clears the stream.
    void WriteWarning();
    // Information text to screen (flushed).  Clears the stream.
    void WriteInfo();
    // The given text straight to screen (flushed); the stream is untouched.
    void WriteInfo(char* text);

    int first_error;          // 1 until the first WriteErrorNoQuit, then 0
    FILE* screen;             // main output; null prints nothing.  Not owned.
    FILE* warning_file;       // second output for warnings; may be null.  Not owned.
    FILE* error_file;         // second output for errors; may be null.  Not owned.
    char error_buffer[BufferSize];
    char warning_buffer[BufferSize];
    char info_buffer[BufferSize];
    FixedBufferStream* error_stream;    // owned, writes into error_buffer
    FixedBufferStream* warning_stream;  // owned, writes into warning_buffer
    FixedBufferStream* info_stream;     // owned, writes into info_buffer
};

// The one instance, built when the library is loaded.  The embedding program
// may point screen, warning_file and error_file wherever it likes.
extern ErrorWriter errorwriter;

// Ends the process with exit status 2.
[[noreturn]] void QuitError();

#ifdef LAMINATE_FUZZ_BUILD
// Fuzz builds only, where one process stands for many runs.  A quit hook is
// called by WriteErrorAndQuit (after the message is written) and by
// QuitError in place of the exit; it must not return, but throw or jump back
// to the harness.  Should it return, the process exits with status 2 as
// usual.  Null, the initial value, keeps the plain exit.
typedef void (*QuitHook)();
void SetQuitHook(QuitHook hook);
#endif

// Writes text and a newline to stderr.
void WarnWin(char* text);
// printf-style formatting into a stream; the result is cut to 1023 characters.
void stprintf(std::ostream& os, char const* format, ...)
    __attribute__((format(printf, 2, 3)));

#endif
