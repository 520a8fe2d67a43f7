// Element-wise operators, products and the accumulating products of Matriu.
#include <string>

#include <gtest/gtest.h>

#include "fatal.h"
#include "laminate/linalg/matriu.h"
#include "linalg/matriu_rows.h"
#include "laminate/linalg/reavec.h"
#include "laminate/linalg/reavecv.h"

using namespace vantrel;

namespace {

// Distinct entries, so that a transposed read in the wrong order shows.
Matriu const A = Rows({{1, 2, 3}, {4, 5, 6}});        // 2 x 3
Matriu const At = Rows({{1, 4}, {2, 5}, {3, 6}});     // its transpose
Matriu const B = Rows({{7, 8}, {9, 10}, {11, 12}});   // 3 x 2
Matriu const Bt = Rows({{7, 9, 11}, {8, 10, 12}});
Matriu const AB = Rows({{58, 64}, {139, 154}});

MatriuT Carrier(Matriu const& m)
{
    MatriuT t;
    t = m;
    return t;
}

}  // namespace

TEST(MatriuElementwise, ScalarAndMatrixOperands)
{
    EXPECT_TRUE(A + 0.5 == Rows({{1.5, 2.5, 3.5}, {4.5, 5.5, 6.5}}));
    EXPECT_TRUE(A * -2.0 == Rows({{-2, -4, -6}, {-8, -10, -12}}));
    // A true division: 5/3 and 7/3 differ from products with 1/3.
    EXPECT_TRUE(Rows({{5, 7}}) / 3.0 == Rows({{5.0 / 3.0, 7.0 / 3.0}}));
    Matriu m = A;
    ((m += 1.0) *= 2.0) -= 4.0;
    EXPECT_TRUE((m /= 10.0) == Rows({{0, 0.2, 0.4}, {0.6, 0.8, 1.0}}));
    MatriuT t = Carrier(Rows({{14, 7}}));
    (((t += 1.0) -= 3.0) *= 0.5) /= 3.0;
    EXPECT_TRUE(Matriu(t) == Rows({{2, 2.5 / 3.0}}));
    Transpose view(A);
    EXPECT_TRUE(view - 1.0 == Rows({{0, 3}, {1, 4}, {2, 5}}));
    EXPECT_TRUE(-view == At * -1.0);
    MatriuT neg = Carrier(A), cb = Carrier(B);
    EXPECT_TRUE(-neg == A * -1.0);

    Transpose bt(Bt), a(A), b(B);  // stand for B (3 x 2), At, Bt
    EXPECT_TRUE((A - Bt) == Rows({{-6, -7, -8}, {-4, -5, -6}}));
    EXPECT_TRUE(b - A == Bt - A);
    EXPECT_TRUE(a - bt == At - B);
    EXPECT_TRUE(a - cb == At - B);
    Matriu acc = A;
    (acc += A) -= Bt;
    EXPECT_TRUE(acc == A * 2.0 - Bt);
    MatriuT c = Carrier(A);
    ((c += b) -= A) -= b;
    EXPECT_TRUE(Matriu(c).isZero());
}

TEST(MatriuProducts, AllOperandFormsAndVectors)
{
    Transpose at(At), bt(Bt), a(A), b(B);
    EXPECT_TRUE(A * B == AB);
    EXPECT_TRUE(at * B == AB);
    EXPECT_TRUE(A * bt == AB);
    EXPECT_TRUE(at * bt == AB);
    EXPECT_TRUE(b * a == Rows({{58, 139}, {64, 154}}));

    // A 4 x 4 matrix moves a 3-D point: block times p plus column 4.
    Matriu const M = Rows({{0, -1, 0, 5}, {1, 0, 0, 6}, {0, 0, 1, 7}, {9, 9, 9, 9}});
    EXPECT_EQ(Vals(M * Vec({1, 2, 3})), (V{3, 7, 10}));
    EXPECT_EQ(Vals(M * Vec({1, 2, 3, 1})), (V{3, 7, 10, 63}));
    EXPECT_EQ(Vals(M * Vec<ReaVec>({1, 2, 3})), (V{3, 7, 10}));
    EXPECT_EQ(Vals(B * Vec<ReaVec>({1, -1})), (V{-1, -1, -1}));
}

TEST(MatriuProducts, AccumulatingFamily)
{
    Matriu const C0 = Rows({{1, 2}, {3, 4}});
    Matriu c(2, 2);
    c.product(A, B, 1.0);
    EXPECT_TRUE(c == AB);
    struct Form {
        void (Matriu::*set)(Matriu const&, Matriu const&, double);
        void (Matriu::*add)(Matriu const&, Matriu const&, double);
        void (Matriu::*sub)(Matriu const&, Matriu const&, double);
        Matriu const& a;
        Matriu const& b;
    } const forms[] = {
        {&Matriu::product, &Matriu::add_product, &Matriu::sub_product, A, B},
        {&Matriu::trans_product, &Matriu::add_trans_product, &Matriu::sub_trans_product, At, B},
        {&Matriu::product_trans, &Matriu::add_product_trans, &Matriu::sub_product_trans, A, Bt},
        {&Matriu::trans_product_trans, &Matriu::add_trans_product_trans,
         &Matriu::sub_trans_product_trans, At, Bt},
    };
    for (Form const& f : forms) {
        (c.*f.set)(f.a, f.b, -0.5);
        EXPECT_TRUE(c == AB * -0.5);
        Matriu acc = C0;
        (acc.*f.add)(f.a, f.b, 2.0);
        EXPECT_TRUE(acc == C0 + AB * 2.0);
        (acc.*f.sub)(f.a, f.b, 1.0);
        EXPECT_TRUE(acc == C0 + AB);
    }
    c.product(C0, 3.0);
    c.add_product(C0, 1.0);
    c.sub_product(C0, 2.0);
    EXPECT_TRUE(c == C0 * 2.0);
    Matriu t(3, 2);
    t.trans_product(A, 2.0);
    t.add_trans_product(A, 1.0);
    EXPECT_TRUE(t == At * 3.0);
    t.sub_trans_product(A, 3.0);
    EXPECT_TRUE(t.isZero());
}

TEST(MatriuArithDeathTest, ScalarAndSignMisuse)
{
    Matriu empty;
    MatriuT t;
    Transpose view(empty);
    EXPECT_FATAL(empty + 1.5, "Can't add 1\\.5 to a zero size Matriu");
    EXPECT_FATAL(t -= 2.0, "Can't subtract 2 from a zero size Matriu");
    EXPECT_FATAL(view - 1.0, "Can't substract 1 to a zero size Matriu");
    EXPECT_FATAL(empty *= 3.0, "Can't multiply by 3 a zero size Matriu");
    EXPECT_FATAL(view / 0.25, "Can't divide by 0\\.25 a zero size Matriu");
    // Division by zero is reported before the size.
    EXPECT_FATAL(empty / 0.0, "Matriu division by zero scalar error");
    EXPECT_FATAL(-view, "Can't change sign a zero size Matriu");
}

TEST(MatriuArithDeathTest, ShapeMessages)
{
    Matriu empty;
    std::string const shapes = "\n\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=3, ncols=2";
    EXPECT_FATAL(empty + empty, "Can't add zero sized matrices");
    EXPECT_FATAL(A + B, "Can't add two Matriu with diferent sizes" + shapes);
    // A Transpose shows the shape it stands for.
    Transpose a(A);
    EXPECT_FATAL(A - a, "Can't subtract two Matriu with diferent sizes" + shapes);
    std::string const same = "-\n\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=2, ncols=3";
    Transpose at(At);
    EXPECT_FATAL(A * A, "Incompatible dimensions for multiply -A" + same);
    EXPECT_FATAL(A * at, "Incompatible dimensions for multiply -C" + same);
    EXPECT_FATAL(B * Vec({1, 1, 1}),
                 "error in ReaVecT  operator \\*\\. No correct size\\(file Matriu B\\)\n");
    EXPECT_FATAL(Rows({{1, 1}, {1, 1}, {1, 1}, {1, 1}}) * Vec<ReaVec>({1, 1}),
                 "error in ReaVecT  operator \\*\\. No correct size \\(file Matriu A\\)\n");
}
