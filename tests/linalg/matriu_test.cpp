#include <gtest/gtest.h>

#include <cmath>

#include "fatal.h"
#include "laminate/linalg/matriu.h"
#include "linalg/matriu_rows.h"

using namespace vantrel;

namespace {
Matriu const A23 = Rows({{1, 2, 3}, {4, 5, 6}});
}

TEST(Matriu, RowMajorCopyAndAssignment)
{
    EXPECT_EQ(A23(2, 1), 4.0);
    Matriu copy(A23);
    EXPECT_NE(copy.data, A23.data);

    // An array of equal size is reused, whatever the shape.
    Matriu target(3, 2);
    double* before = target.data;
    target = A23;
    EXPECT_EQ(target.data, before);
    EXPECT_TRUE(target == A23);
    Matriu bigger = Rows({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    target = bigger;
    target = target;
    EXPECT_TRUE(target == bigger);
}

TEST(Matriu, TakeOverEmptiesTheCarrier)
{
    Transpose view(A23);
    MatriuT carrier = view;  // materialised transpose, 3 x 2
    double* buffer = carrier.data;
    Matriu taken(carrier);
    EXPECT_EQ(taken.data, buffer);
    EXPECT_TRUE(taken == Rows({{1, 4}, {2, 5}, {3, 6}}));
    EXPECT_EQ(carrier.nrows + carrier.ncols + carrier.size, 0);
    EXPECT_EQ(carrier.data, nullptr);

    MatriuT again = view;
    Matriu assigned = Rows({{7}});
    assigned = again;
    EXPECT_EQ(assigned(2, 1), 2.0);
    EXPECT_EQ(again.data, nullptr);

    // Carrier to carrier: self-assignment is harmless, otherwise a take-over.
    MatriuT a = view, b;
    a = a;
    b = a;
    EXPECT_EQ(a.data, nullptr);
    EXPECT_TRUE(Matriu(b) == taken);
    MatriuT c;
    c = A23;  // deep copy into a carrier
    EXPECT_NE(c.data, A23.data);
    EXPECT_TRUE(Matriu(c) == A23);
}

TEST(Matriu, TransposeViewBorrowsAndCopies)
{
    Matriu held(A23);
    {
        Transpose view(held);
        EXPECT_EQ(view.data, held.data);
        Matriu back = view.t();
        EXPECT_TRUE(back == held);
        EXPECT_NE(back.data, held.data);
    }
    EXPECT_TRUE(held == A23);  // the view released nothing

    Matriu t(2, 3);
    double* before = t.data;
    t.transpose(held);
    EXPECT_EQ(t.data, before);
    EXPECT_TRUE(t == Rows({{1, 4}, {2, 5}, {3, 6}}));
}

TEST(Matriu, FillRedimensionScornAndIsZero)
{
    Matriu m(3, 2);
    m = 0.0;
    m(2, 2) = -0.0;
    EXPECT_TRUE(m.isZero());
    m(1, 1) = NAN;
    EXPECT_FALSE(m.isZero());
    EXPECT_FALSE(Matriu().isZero());

    Matriu s = Rows({{1, 2}, {3, 4}, {5, 6}});
    double* before = s.data;
    s.redimension(2, 3);
    EXPECT_EQ(s.data, before);  // same size: array and storage order kept
    EXPECT_EQ(s(2, 1), 4.0);

    Matriu t = Rows({{1e-13, -1e-12, 2e-12, -0.0}});
    t.scorn(1e-12);
    EXPECT_TRUE(t == Rows({{0, 0, 2e-12, 0}}));
    EXPECT_FALSE(std::signbit(t(1, 4)));
}

TEST(Matriu, SubMatriuAndAddSubmatriu)
{
    Matriu m = Rows({{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}});
    EXPECT_TRUE(m.subMatriu(2, 3, 2, 4) == Rows({{6, 7, 8}, {10, 11, 12}}));
    Matriu s = Rows({{-1, -2}, {-3, -4}});
    m.AddSubmatriu(2, 2, s);  // overwrites in place when S fits
    EXPECT_TRUE(m == Rows({{1, 2, 3, 4}, {5, -1, -2, 8}, {9, -3, -4, 12}}));
    Matriu g = Rows({{1, 2}, {3, 4}});
    g.AddSubmatriu(2, 3, s);  // grows with zeros when it does not
    EXPECT_TRUE(g == Rows({{1, 2, 0, 0}, {3, 4, -1, -2}, {0, 0, -3, -4}}));
    // Into itself: a private copy is taken first.
    Matriu self = Rows({{1, 2}, {3, 4}});
    self.AddSubmatriu(2, 2, self);
    EXPECT_TRUE(self == Rows({{1, 2, 0}, {3, 1, 2}, {0, 3, 4}}));
}

TEST(Matriu, ComparisonsIdentityAndConcatenation)
{
    EXPECT_TRUE(Matriu() == Matriu(0, 0));
    EXPECT_FALSE(Matriu(0, 0) == Matriu(0, 5));
    Matriu a = Rows({{1, 2}, {3, 4}}), b = Rows({{1, 2}, {3, 4.001}});
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(AreVeryEqual(a, b, 0.001 + 1e-12));
    EXPECT_FALSE(AreVeryEqual(a, b, 0.0009));

    EXPECT_TRUE(I(2) == Rows({{1, 0}, {0, 1}}));
    EXPECT_TRUE((Rows({{1}, {2}}) & a) == Rows({{1, 1, 2}, {2, 3, 4}}));
    EXPECT_TRUE((Matriu() & a) == a);
    Matriu c = Rows({{7, 8}});
    EXPECT_TRUE((a | c) == Rows({{1, 2}, {3, 4}, {7, 8}}));
    Matriu chain;  // a chain started from an empty matrix
    chain = chain | c;
    chain = chain | c;
    EXPECT_TRUE(chain == Rows({{7, 8}, {7, 8}}));
}

TEST(MatriuDeathTest, StorageAndShapeMisuse)
{
    EXPECT_FATAL(Matriu(-1, 2), "Can't create a Matriu of size -1,2");
    EXPECT_FATAL({ MatriuT m; m = 3.0; }, "Can't fill with 3 a zero size Matriu");
    EXPECT_FATAL({ Matriu m(3, 2); m.redimension(-1, 2); },
                 "Can't redimension to a negative values");
    EXPECT_FATAL({ Matriu m; m.scorn(1.0); }, "Can't scorn a zero size Matriu");
    EXPECT_FATAL(I(0), "Can't construct an identity Matriu of size 0");
    EXPECT_FATAL({ Matriu m(3, 4); m.subMatriu(2, 4, 1, 2); },
                 "subMatriu incorrect size :\n\tMatriu size nrows=3, ncols=4\n"
                 "\tsubMatriu start: row=2, col=1, end: row=4, col=2");
    EXPECT_FATAL({ Matriu a(2, 2); Matriu b; a | b; }, "Can't concatenate a zero size Matriu");
    EXPECT_FATAL({ Matriu a(2, 2); Matriu b(3, 1); a & b; },
                 "Horizontal concatenation with diferent number of rows\n"
                 "\tMatriu 1 : nrows=2, ncols=2\n\tMatriu 2 : nrows=3, ncols=1");
    EXPECT_FATAL({ Matriu a(2, 2); Matriu b(1, 3); a | b; },
                 "Vertical concatenation with diferent number of columns\n"
                 "\tMatriu 1 : nrows=2, ncols=2\n\tMatriu 2 : nrows=1, ncols=3");
}
