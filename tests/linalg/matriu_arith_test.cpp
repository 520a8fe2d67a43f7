// Element-wise operators, products and the accumulating products of Matriu.
#include <initializer_list>

#include <gtest/gtest.h>

#include "fatal.h"
#include "linalg/matriu.h"
#include "linalg/reavec.h"
#include "linalg/reavecv.h"

using vantrel::Matriu;
using vantrel::MatriuT;
using vantrel::ReaVec;
using vantrel::ReaVecV;
using vantrel::Transpose;

namespace {

Matriu Rows(std::initializer_list<std::initializer_list<double>> rows)
{
    Matriu m(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int k = 0;
    for (auto const& r : rows)
        for (double v : r) m.data[k++] = v;
    return m;
}

MatriuT Carrier(Matriu const& m)
{
    MatriuT t;
    t = m;
    return t;
}

// A 2 x 3 and a 3 x 2 with distinct entries, so that a transposed read in the
// wrong order shows.
Matriu const A23 = Rows({{1, 2, 3}, {4, 5, 6}});
Matriu const B32 = Rows({{7, 8}, {9, 10}, {11, 12}});

}  // namespace

TEST(MatriuScalarOps, FreeAndInPlaceForms)
{
    EXPECT_TRUE(A23 + 0.5 == Rows({{1.5, 2.5, 3.5}, {4.5, 5.5, 6.5}}));
    EXPECT_TRUE(A23 - 1.0 == Rows({{0, 1, 2}, {3, 4, 5}}));
    EXPECT_TRUE(A23 * -2.0 == Rows({{-2, -4, -6}, {-8, -10, -12}}));
    // Division proper: 5 / 3 and 7 / 3 differ from a product with 1 / 3.
    Matriu q = Rows({{5, 7}}) / 3.0;
    EXPECT_EQ(q(1, 1), 5.0 / 3.0);
    EXPECT_EQ(q(1, 2), 7.0 / 3.0);
    EXPECT_TRUE(A23 == Rows({{1, 2, 3}, {4, 5, 6}}));  // operands untouched

    Matriu m = A23;
    m += 1.0;
    m *= 2.0;
    m -= 4.0;
    m /= 10.0;
    EXPECT_TRUE(m == Rows({{0, 0.2, 0.4}, {0.6, 0.8, 1.0}}));

    MatriuT t = Carrier(Rows({{14, 7}}));
    t += 1.0;
    t -= 3.0;
    t *= 0.5;
    t /= 3.0;
    EXPECT_EQ(t(1, 1), 2.0);
    EXPECT_EQ(t(1, 2), 2.5 / 3.0);
}

TEST(MatriuScalarOps, TransposeOperandsStandForTheTranspose)
{
    Matriu held = A23;
    Transpose t(held);
    EXPECT_TRUE(t + 1.0 == Rows({{2, 5}, {3, 6}, {4, 7}}));
    EXPECT_TRUE(t - 1.0 == Rows({{0, 3}, {1, 4}, {2, 5}}));
    EXPECT_TRUE(t * 2.0 == Rows({{2, 8}, {4, 10}, {6, 12}}));
    EXPECT_TRUE(t / 2.0 == Rows({{0.5, 2}, {1, 2.5}, {1.5, 3}}));
    EXPECT_TRUE(held == A23);
}

TEST(MatriuUnaryMinus, AllThreeForms)
{
    EXPECT_TRUE(-A23 == Rows({{-1, -2, -3}, {-4, -5, -6}}));
    MatriuT c = Carrier(A23);
    EXPECT_TRUE(-c == Rows({{-1, -2, -3}, {-4, -5, -6}}));
    EXPECT_EQ(c(2, 3), 6.0);  // the carrier keeps its value
    Transpose t(A23);
    EXPECT_TRUE(-t == Rows({{-1, -4}, {-2, -5}, {-3, -6}}));
}

TEST(MatriuSums, PlainTransposedAndCarrierOperands)
{
    Matriu const ones = Rows({{1, 1, 1}, {1, 1, 1}});
    EXPECT_TRUE(A23 + ones == Rows({{2, 3, 4}, {5, 6, 7}}));
    EXPECT_TRUE(A23 - ones == Rows({{0, 1, 2}, {3, 4, 5}}));

    Transpose bt(B32);  // stands for {{7, 9, 11}, {8, 10, 12}}
    EXPECT_TRUE(A23 + bt == Rows({{8, 11, 14}, {12, 15, 18}}));
    EXPECT_TRUE(A23 - bt == Rows({{-6, -7, -8}, {-4, -5, -6}}));
    EXPECT_TRUE(bt - A23 == Rows({{6, 7, 8}, {4, 5, 6}}));

    MatriuT c = Carrier(ones);
    EXPECT_TRUE(A23 - c == Rows({{0, 1, 2}, {3, 4, 5}}));
    MatriuT c2 = Carrier(ones);
    EXPECT_TRUE(bt - c2 == Rows({{6, 8, 10}, {7, 9, 11}}));

    Matriu const Bt = Rows({{7, 9, 11}, {8, 10, 12}});
    Transpose at(A23), btt(Bt);  // both stand for 3 x 2 matrices
    EXPECT_TRUE(at + btt == Rows({{8, 12}, {11, 15}, {14, 18}}));
    EXPECT_TRUE(at - btt == Rows({{-6, -4}, {-7, -5}, {-8, -6}}));
    EXPECT_TRUE(btt - at == Rows({{6, 4}, {7, 5}, {8, 6}}));
}

TEST(MatriuSums, InPlaceForms)
{
    Matriu m = A23;
    m += A23;
    EXPECT_TRUE(m == A23 * 2.0);
    m -= A23;
    EXPECT_TRUE(m == A23);
    m -= m;  // aliasing is harmless element by element
    EXPECT_TRUE(m.isZero());

    Transpose bt(B32);
    MatriuT c = Carrier(A23);
    c += bt;
    EXPECT_EQ(c(1, 2), 2.0 + 9.0);
    EXPECT_EQ(c(2, 1), 4.0 + 8.0);
    c -= bt;
    c += A23;
    c -= Rows({{1, 1, 1}, {1, 1, 1}});
    Matriu result(c);
    EXPECT_TRUE(result == Rows({{1, 3, 5}, {7, 9, 11}}));
}

TEST(MatriuProducts, AllFourOperandForms)
{
    Matriu const AB = Rows({{58, 64}, {139, 154}});
    EXPECT_TRUE(A23 * B32 == AB);
    Matriu const At = Rows({{1, 4}, {2, 5}, {3, 6}});
    Matriu const Bt = Rows({{7, 9, 11}, {8, 10, 12}});
    Transpose at(At), bt(Bt);
    EXPECT_TRUE(at * B32 == AB);
    EXPECT_TRUE(A23 * bt == AB);
    EXPECT_TRUE(at * bt == AB);
    // Transposed operands keep their own order: (B^T)(A^T) = (AB)^T.
    Transpose b(B32), a(A23);
    EXPECT_TRUE(b * a == Rows({{58, 139}, {64, 154}}));
    // Rectangular results take the outer dimensions.
    Matriu outer = B32 * A23;
    EXPECT_EQ(outer.nrows, 3);
    EXPECT_EQ(outer.ncols, 3);
    EXPECT_EQ(outer(3, 1), 11.0 * 1 + 12.0 * 4);
    // One empty operand alone passes when the inner dimensions agree.
    Matriu noRows(0, 2);
    Matriu empty = noRows * B32.subMatriu(1, 2, 1, 2);
    EXPECT_EQ(empty.nrows, 0);
    EXPECT_EQ(empty.ncols, 2);
}

TEST(MatriuProducts, MatrixTimesVariableVector)
{
    Matriu const M = Rows({{1, 2, 3, 10}, {4, 5, 6, 20}, {7, 8, 9, 30}, {1, 1, 1, 1}});
    ReaVecV p(3);
    p[0] = 1; p[1] = -1; p[2] = 2;
    ReaVecV moved = M * p;  // upper-left block times p, plus column 4
    ASSERT_EQ(moved.length(), 3);
    EXPECT_EQ(moved[0], 5.0 + 10.0);
    EXPECT_EQ(moved[1], 11.0 + 20.0);
    EXPECT_EQ(moved[2], 17.0 + 30.0);

    ReaVecV h(4);
    h[0] = 1; h[1] = -1; h[2] = 2; h[3] = 0.5;
    ReaVecV full = M * h;  // a 4-vector: an ordinary product
    ASSERT_EQ(full.length(), 4);
    EXPECT_EQ(full[0], 5.0 + 5.0);
    EXPECT_EQ(full[3], 2.0 + 0.5);

    ReaVecV v(3);
    v[0] = 1; v[1] = 0; v[2] = -1;
    ReaVecV r = A23 * v;
    ASSERT_EQ(r.length(), 2);
    EXPECT_EQ(r[0], -2.0);
    EXPECT_EQ(r[1], -2.0);
}

TEST(MatriuProducts, MatrixTimesSmallVector)
{
    Matriu const M = Rows({{0, -1, 0, 5}, {1, 0, 0, 6}, {0, 0, 1, 7}, {0, 0, 0, 1}});
    ReaVec p(3);
    p[0] = 1; p[1] = 2; p[2] = 3;
    ReaVec moved = M * p;  // a quarter turn about z, then a shift
    ASSERT_EQ(moved.length(), 3);
    EXPECT_EQ(moved[0], -2.0 + 5.0);
    EXPECT_EQ(moved[1], 1.0 + 6.0);
    EXPECT_EQ(moved[2], 3.0 + 7.0);

    ReaVec v(2);
    v[0] = 1; v[1] = 2;
    ReaVec r = Rows({{1, 1}, {2, 0}, {0, 3}}) * v;
    ASSERT_EQ(r.length(), 3);
    EXPECT_EQ(r[0], 3.0);
    EXPECT_EQ(r[1], 2.0);
    EXPECT_EQ(r[2], 6.0);
}

TEST(MatriuAccumulating, TwoFactorFamilyMatchesTheOperators)
{
    Matriu const At = Rows({{1, 4}, {2, 5}, {3, 6}});
    Matriu const Bt = Rows({{7, 9, 11}, {8, 10, 12}});
    Matriu const AB = A23 * B32;
    Matriu const C0 = Rows({{1, 2}, {3, 4}});

    Matriu c(2, 2);
    c.product(A23, B32, 1.0);
    EXPECT_TRUE(c == AB);
    Matriu twice(2, 2);
    twice.product(A23, B32, 2.0);
    EXPECT_TRUE(twice == AB * 2.0);
    c.trans_product(At, B32, 1.0);
    EXPECT_TRUE(c == AB);
    c.product_trans(A23, Bt, 0.5);
    EXPECT_TRUE(c == AB * 0.5);
    c.trans_product_trans(At, Bt, -1.0);
    EXPECT_TRUE(c == -AB);

    struct {
        void (Matriu::*add)(Matriu const&, Matriu const&, double);
        void (Matriu::*sub)(Matriu const&, Matriu const&, double);
        Matriu const& a;
        Matriu const& b;
    } const forms[] = {
        {&Matriu::add_product, &Matriu::sub_product, A23, B32},
        {&Matriu::add_trans_product, &Matriu::sub_trans_product, At, B32},
        {&Matriu::add_product_trans, &Matriu::sub_product_trans, A23, Bt},
        {&Matriu::add_trans_product_trans, &Matriu::sub_trans_product_trans, At, Bt},
    };
    for (auto const& form : forms) {
        Matriu acc = C0;
        (acc.*form.add)(form.a, form.b, 2.0);
        EXPECT_TRUE(acc == C0 + AB * 2.0);
        (acc.*form.sub)(form.a, form.b, 1.0);
        EXPECT_TRUE(acc == C0 + AB);
    }
}

TEST(MatriuAccumulating, OneFactorFamily)
{
    Matriu const B = Rows({{1, -2}, {3, 0.5}});
    Matriu c(2, 2);
    c.product(B, 3.0);
    EXPECT_TRUE(c == Rows({{3, -6}, {9, 1.5}}));
    c.add_product(B, 1.0);
    EXPECT_TRUE(c == Rows({{4, -8}, {12, 2}}));
    c.sub_product(B, 2.0);
    EXPECT_TRUE(c == Rows({{2, -4}, {6, 1}}));

    Matriu t(3, 2);
    t.trans_product(A23, 2.0);
    EXPECT_TRUE(t == Rows({{2, 8}, {4, 10}, {6, 12}}));
    t.add_trans_product(A23, 1.0);
    EXPECT_TRUE(t == Rows({{3, 12}, {6, 15}, {9, 18}}));
    t.sub_trans_product(A23, 3.0);
    EXPECT_TRUE(t.isZero());
}

TEST(MatriuArithDeathTest, ScalarAndSignMisuse)
{
    Matriu empty;
    EXPECT_FATAL(empty + 1.5, "Can't add 1\\.5 to a zero size Matriu");
    EXPECT_FATAL(empty - 2.0, "Can't subtract 2 from a zero size Matriu");
    EXPECT_FATAL(empty * 3.0, "Can't multiply by 3 a zero size Matriu");
    EXPECT_FATAL(empty / 4.0, "Can't divide by 4 a zero size Matriu");
    EXPECT_FATAL(empty += 1.0, "Can't add 1 to a zero size Matriu");
    EXPECT_FATAL(empty /= 0.25, "Can't divide by 0\\.25 a zero size Matriu");
    // Division by zero is caught before the size.
    EXPECT_FATAL(empty / 0.0, "Matriu division by zero scalar error");
    EXPECT_FATAL(A23 / 0.0, "Matriu division by zero scalar error");
    Matriu m = A23;
    EXPECT_FATAL(m /= 0.0, "Matriu division by zero scalar error");
    MatriuT t;
    EXPECT_FATAL(t -= 1.0, "Can't subtract 1 from a zero size Matriu");
    EXPECT_FATAL(t *= 2.0, "Can't multiply by 2 a zero size Matriu");
    EXPECT_FATAL(t /= 0.0, "Matriu division by zero scalar error");
    Transpose view(empty);
    EXPECT_FATAL(view + 1.0, "Can't add 1 to a zero size Matriu");
    EXPECT_FATAL(view - 1.0, "Can't substract 1 to a zero size Matriu");
    EXPECT_FATAL(view * 1.0, "Can't multiply by 1 a zero size Matriu");
    EXPECT_FATAL(view / 0.0, "Matriu division by zero scalar error");
    EXPECT_FATAL(-empty, "Can't change sign a zero size Matriu");
    EXPECT_FATAL(-t, "Can't change sign a zero size Matriu");
    EXPECT_FATAL(-view, "Can't change sign a zero size Matriu");
}

TEST(MatriuArithDeathTest, SumShapes)
{
    Matriu empty;
    EXPECT_FATAL(empty + empty, "Can't add zero sized matrices");
    EXPECT_FATAL(empty - Matriu(0, 3), "Can't subtract zero sized matrices");
    // Same size, different shapes.
    EXPECT_FATAL(A23 + B32,
                 "Can't add two Matriu with diferent sizes\n"
                 "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=3, ncols=2");
    EXPECT_FATAL(A23 - B32,
                 "Can't subtract two Matriu with diferent sizes\n"
                 "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=3, ncols=2");
    // One empty operand fails on the shapes.
    EXPECT_FATAL(A23 + empty, "Can't add two Matriu with diferent sizes\n"
                              "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=0, ncols=0");
    // A Transpose operand shows the shape it stands for.
    Transpose at(A23);
    EXPECT_FATAL(A23 - at, "Can't subtract two Matriu with diferent sizes\n"
                           "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=3, ncols=2");
    Transpose bt(B32);
    EXPECT_FATAL(at + bt, "Can't add two Matriu with diferent sizes\n"
                          "\tMatriu 1 : nrows=3, ncols=2\n\tMatriu 2 : nrows=2, ncols=3");
    Matriu m = A23;
    EXPECT_FATAL(m += B32, "Can't add two Matriu with diferent sizes\n");
    MatriuT c = Carrier(B32);
    EXPECT_FATAL(c -= A23, "Can't subtract two Matriu with diferent sizes\n");
}

TEST(MatriuArithDeathTest, ProductShapes)
{
    Matriu empty;
    EXPECT_FATAL(empty * empty, "Can't multiply zero sized matrices");
    char const* shapes = "\n\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=2, ncols=3";
    EXPECT_FATAL(A23 * A23, std::string("Incompatible dimensions for multiply -A-") + shapes);
    Matriu const At = Rows({{1, 4}, {2, 5}, {3, 6}});
    Transpose at(At);
    EXPECT_FATAL(at * A23, std::string("Incompatible dimensions for multiply -B-") + shapes);
    EXPECT_FATAL(A23 * at, std::string("Incompatible dimensions for multiply -C-") + shapes);
    EXPECT_FATAL(at * at, std::string("Incompatible dimensions for multiply -D-") + shapes);
}

TEST(MatriuArithDeathTest, VectorLengths)
{
    ReaVecV v3(3);
    v3 = 1.0;
    EXPECT_FATAL(B32 * v3,
                 "error in ReaVecT  operator \\*\\. No correct size\\(file Matriu B\\)\n");
    ReaVec r2(2);
    r2 = 1.0;
    Matriu tall(4, 2);
    tall = 0.0;
    EXPECT_FATAL(tall * r2,
                 "error in ReaVecT  operator \\*\\. No correct size \\(file Matriu A\\)\n");
    EXPECT_FATAL(A23 * r2,
                 "error in ReaVecT  operator \\*\\. No correct size \\(file Matriu A\\)\n");
}
