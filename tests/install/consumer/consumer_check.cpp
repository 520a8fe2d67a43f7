// Links the installed library and solves a small system with it: 2x + y = 3,
// x + 3y = 5 has x = 0.8, y = 1.4.  Prints "ok" and exits 0 when the
// solution is right.
#include <cmath>
#include <cstdio>

#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavecv.h"

int main()
{
    vantrel::Matriu A(2, 2);
    A(1, 1) = 2; A(1, 2) = 1;
    A(2, 1) = 1; A(2, 2) = 3;
    vantrel::ReaVecV b(2), x(2);
    b[0] = 3; b[1] = 5;
    if (A.LinSolve(b, x) != 0 || std::fabs(x[0] - 0.8) > 1e-12 || std::fabs(x[1] - 1.4) > 1e-12) {
        std::printf("wrong solution\n");
        return 1;
    }
    std::printf("ok\n");
    return 0;
}
