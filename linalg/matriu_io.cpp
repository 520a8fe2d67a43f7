// Printing a Matriu as a table, and its element files.  The files hold the
// elements only, row-major; the reader must already hold a matrix of the
// right shape.
#include "laminate/linalg/matriu.h"

#include <ostream>

#include "laminate/util/errorwriter.h"

namespace vantrel {

namespace {

void CheckFileSize(int size, char const* message)
{
    if (size < 1) {
        *errorwriter.error_stream << message;
        errorwriter.WriteErrorAndQuit();
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& os, Matriu const& A)
{
    if (A.size == 0) {
        os << "\n\t(Zero size Matriu)\n";
        return os;
    }
    os << "\n   ";
    for (int j = 1; j <= A.ncols; ++j) stprintf(os, "%10i ", j);
    for (int i = 1; i <= A.nrows; ++i) {
        os << std::endl;
        stprintf(os, "%2i ", i);
        for (int j = 1; j <= A.ncols; ++j) stprintf(os, "%10g ", A(i, j));
    }
    os << std::endl;
    return os;
}

void Matriu::WriteBinary(FILE* f)
{
    CheckFileSize(size, "error: can't write 0x0 Matriu\n");
    // A short write is left for the caller to find through ferror().
    fwrite(data, sizeof(double), size, f);
}

void Matriu::ReadBinary(FILE*)
{
    // The binary form has no shape, so it is never read back.
    *errorwriter.error_stream << "error: Function 'ReadBinary' should not be used\n";
    errorwriter.WriteErrorAndQuit();
}

void Matriu::WriteAscii(FILE* f)
{
    CheckFileSize(size, "error: can't ascii write 0x0 Matriu\n");
    for (int i = 1; i <= nrows; ++i) {
        for (int j = 1; j <= ncols; ++j) fprintf(f, "%lf  ", (*this)(i, j));
        fprintf(f, "\n");
    }
}

void Matriu::ReadAscii(FILE* f)
{
    CheckFileSize(size, "error: can't ascii read 0x0 Matriu\n");
    // A failed scan leaves its element as it was; the scans go on regardless.
    for (int k = 0; k < size; ++k)
        if (fscanf(f, "%lf", &data[k]) != 1) continue;
}

}  // namespace vantrel
