#include "laminate/util/errorwriter.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace {

const char kBanner[] = "\n-----------ERROR---------------\n";

#ifdef LAMINATE_FUZZ_BUILD
QuitHook quitHook = nullptr;
#endif

// The end of every fatal report.
[[noreturn]] void Quit()
{
#ifdef LAMINATE_FUZZ_BUILD
    if (quitHook) quitHook();
#endif
    std::exit(2);
}

// The buffers are zeroed after each write-out, so the text ends at the first
// zero; a completely full buffer has none, hence the bounded length.
void PutText(FILE* f, const char* text)
{
    fwrite(text, 1, strnlen(text, ErrorWriter::BufferSize), f);
}

}  // namespace

FixedBufferStream::FixedBufferStream(char* buffer, int capacity)
    : std::ostream(nullptr), buf_(buffer, capacity), capacity_(capacity)
{
    rdbuf(&buf_);
}

void FixedBufferStream::reset()
{
    memset(buf_.base(), 0, capacity_);
    buf_.rewind();
    clear();
}

ErrorWriter errorwriter;

ErrorWriter::ErrorWriter()
    : first_error(1), screen(nullptr), warning_file(nullptr), error_file(nullptr)
{
    memset(error_buffer, 0, sizeof error_buffer);
    memset(warning_buffer, 0, sizeof warning_buffer);
    memset(info_buffer, 0, sizeof info_buffer);
    error_stream = new FixedBufferStream(error_buffer, BufferSize);
    warning_stream = new FixedBufferStream(warning_buffer, BufferSize);
    info_stream = new FixedBufferStream(info_buffer, BufferSize);
}

ErrorWriter::~ErrorWriter()
{
    delete error_stream;
    delete warning_stream;
    delete info_stream;
}

void ErrorWriter::WriteErrorAndQuit()
{
    // The second file first: where both are one file, the bare text precedes
    // the screen copy with its banner.
    if (error_file) PutText(error_file, error_stream->str());
    if (screen) {
        fputs(kBanner, screen);
        PutText(screen, error_stream->str());
        fputc('\n', screen);
    }
    Quit();
}

void ErrorWriter::WriteErrorNoQuit()
{
    if (error_file) PutText(error_file, error_stream->str());
    if (screen) {
        if (first_error) fputs(kBanner, screen);
        PutText(screen, error_stream->str());
        fputc('\n', screen);
    }
    error_stream->reset();
    first_error = 0;
}

void ErrorWriter::WriteWarning()
{
    if (warning_file) PutText(warning_file, warning_stream->str());
    if (screen) PutText(screen, warning_stream->str());
    warning_stream->reset();
}

void ErrorWriter::WriteInfo()
{
    if (screen) {
        PutText(screen, info_stream->str());
        fflush(screen);
    }
    info_stream->reset();
}

void ErrorWriter::WriteInfo(char* text)
{
    if (screen) {
        fputs(text, screen);
        fflush(screen);
    }
}

void QuitError()
{
    Quit();
}

#ifdef LAMINATE_FUZZ_BUILD
void SetQuitHook(QuitHook hook)
{
    quitHook = hook;
}
#endif

void WarnWin(char* text)
{
    fprintf(stderr, "%s\n", text);
}

void stprintf(std::ostream& os, char const* format, ...)
{
    char line[1024];
    va_list ap;
    va_start(ap, format);
    vsnprintf(line, sizeof line, format, ap);
    va_end(ap);
    os << line;
}
