#include <gtest/gtest.h>

#include <cmath>

#include "fatal.h"
#include "linalg/matriu.h"

using vantrel::Matriu;
using vantrel::MatriuT;
using vantrel::Transpose;

namespace {

// A matrix filled row by row from the given values.
Matriu make(int nr, int nc, std::initializer_list<double> values)
{
    Matriu m(nr, nc);
    int k = 0;
    for (double v : values) m.data[k++] = v;
    return m;
}

}  // namespace

TEST(Matriu, ConstructionAndRowMajorAccess)
{
    Matriu empty;
    EXPECT_EQ(empty.nrows, 0);
    EXPECT_EQ(empty.size, 0);
    EXPECT_EQ(empty.data, nullptr);

    Matriu m = make(2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(m.size, 6);
    EXPECT_EQ(m(1, 3), 3.0);
    EXPECT_EQ(m(2, 1), 4.0);

    Matriu copy(m);
    EXPECT_NE(copy.data, m.data);
    EXPECT_TRUE(copy == m);
    copy(1, 1) = 9;
    EXPECT_EQ(m(1, 1), 1.0);
}

TEST(Matriu, AssignmentReusesArrayOfEqualSize)
{
    Matriu target = make(3, 2, {0, 0, 0, 0, 0, 0});
    double* before = target.data;
    Matriu source = make(2, 3, {1, 2, 3, 4, 5, 6});
    target = source;
    EXPECT_EQ(target.data, before);
    EXPECT_EQ(target.nrows, 2);
    EXPECT_EQ(target.ncols, 3);
    EXPECT_TRUE(target == source);

    Matriu bigger = make(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    target = bigger;
    EXPECT_EQ(target.size, 9);
    EXPECT_TRUE(target == bigger);

    target = target;  // self-assignment keeps everything
    EXPECT_TRUE(target == bigger);
}

TEST(Matriu, TakeOverEmptiesTheCarrier)
{
    Matriu held = make(2, 3, {1, 2, 3, 4, 5, 6});
    Transpose view(held);
    MatriuT carrier = view;  // materialised transpose, 3 x 2
    double* buffer = carrier.data;
    Matriu taken(carrier);
    EXPECT_EQ(taken.data, buffer);
    EXPECT_EQ(taken.nrows, 3);
    EXPECT_EQ(taken.ncols, 2);
    EXPECT_EQ(taken(3, 2), 6.0);
    EXPECT_EQ(taken(1, 2), 4.0);
    EXPECT_EQ(carrier.nrows, 0);
    EXPECT_EQ(carrier.ncols, 0);
    EXPECT_EQ(carrier.size, 0);
    EXPECT_EQ(carrier.data, nullptr);

    MatriuT again = view;
    Matriu assigned = make(1, 1, {7});
    assigned = again;
    EXPECT_EQ(assigned.size, 6);
    EXPECT_EQ(assigned(2, 1), 2.0);
    EXPECT_EQ(again.data, nullptr);

    // Carrier-to-carrier: self-assignment is harmless, otherwise a take-over.
    MatriuT a = view;
    a = a;
    EXPECT_EQ(a.size, 6);
    MatriuT b;
    b = a;
    EXPECT_EQ(b.size, 6);
    EXPECT_EQ(a.data, nullptr);
    // Deep copy into a carrier.
    MatriuT c;
    c = held;
    EXPECT_NE(c.data, held.data);
    EXPECT_EQ(c(2, 3), 6.0);
}

TEST(Matriu, TransposeViewBorrowsAndCopies)
{
    Matriu held = make(2, 3, {1, 2, 3, 4, 5, 6});
    {
        Transpose view(held);
        EXPECT_EQ(view.owner, 0);
        EXPECT_EQ(view.data, held.data);
        Matriu back = view.t();
        EXPECT_TRUE(back == held);
        EXPECT_NE(back.data, held.data);
    }
    // The view released nothing of the held matrix.
    EXPECT_EQ(held(2, 3), 6.0);
}

TEST(Matriu, FillRedimensionAndIsZero)
{
    Matriu m(3, 2);
    m = 0.0;
    EXPECT_TRUE(m.isZero());
    m.fill(2.5);
    EXPECT_EQ(m(3, 2), 2.5);
    m(1, 1) = NAN;
    EXPECT_FALSE(m.isZero());
    m(1, 1) = -0.0;
    m.fill(0.0);
    m(2, 2) = -0.0;
    EXPECT_TRUE(m.isZero());

    Matriu s = make(3, 2, {1, 2, 3, 4, 5, 6});
    double* before = s.data;
    s.redimension(2, 3);
    EXPECT_EQ(s.data, before);  // same size: array and storage order kept
    EXPECT_EQ(s(2, 1), 4.0);
    s.redimension(4, 4);
    EXPECT_EQ(s.size, 16);
    s.redimension(0, 0);
    EXPECT_EQ(s.size, 0);
    EXPECT_FALSE(s.isZero());
    EXPECT_FALSE(Matriu().isZero());
}

TEST(Matriu, SubMatriuAndAddSubmatriu)
{
    Matriu m = make(3, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    EXPECT_TRUE(m.subMatriu(2, 3, 2, 4) == make(2, 3, {6, 7, 8, 10, 11, 12}));
    EXPECT_TRUE(m.subMatriu(1, 3, 1, 4) == m);

    // Overwrites in place when S fits.
    Matriu s = make(2, 2, {-1, -2, -3, -4});
    Matriu fit(m);
    fit.AddSubmatriu(2, 2, s);
    EXPECT_TRUE(fit == make(3, 4, {1, 2, 3, 4, 5, -1, -2, 8, 9, -3, -4, 12}));

    // Grows with zeros when S does not fit.
    Matriu g = make(2, 2, {1, 2, 3, 4});
    g.AddSubmatriu(2, 3, s);
    EXPECT_TRUE(g == make(3, 4, {1, 2, 0, 0, 3, 4, -1, -2, 0, 0, -3, -4}));

    // Into itself: a private copy is taken first.
    Matriu self = make(2, 2, {1, 2, 3, 4});
    self.AddSubmatriu(2, 2, self);
    EXPECT_TRUE(self == make(3, 3, {1, 2, 0, 3, 1, 2, 0, 3, 4}));
}

TEST(Matriu, TransposeMember)
{
    Matriu a = make(2, 3, {1, 2, 3, 4, 5, 6});
    Matriu t = make(2, 3, {0, 0, 0, 0, 0, 0});
    double* before = t.data;
    t.transpose(a);
    EXPECT_EQ(t.data, before);
    EXPECT_TRUE(t == make(3, 2, {1, 4, 2, 5, 3, 6}));
    Matriu other;
    other.transpose(a);
    EXPECT_TRUE(other == t);
}

TEST(Matriu, ScornFlushesTinyEntries)
{
    Matriu m = make(1, 3, {1e-13, -1e-12, 2e-12});
    m.scorn(1e-12);
    EXPECT_EQ(m(1, 1), 0.0);
    EXPECT_EQ(m(1, 2), 0.0);
    EXPECT_EQ(m(1, 3), 2e-12);
    Matriu z = make(1, 2, {-0.0, 3});
    z.scorn(0.0);
    EXPECT_FALSE(std::signbit(z(1, 1)));
    EXPECT_EQ(z(1, 2), 3.0);
}

TEST(Matriu, ComparisonsFollowShapeFirst)
{
    EXPECT_TRUE(Matriu() == Matriu(0, 0));
    EXPECT_FALSE(Matriu(0, 0) == Matriu(0, 5));
    Matriu a = make(2, 2, {1, 2, 3, 4});
    Matriu b = make(2, 2, {1, 2, 3, 4.001});
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(AreVeryEqual(a, b, 0.001 + 1e-12));
    EXPECT_FALSE(AreVeryEqual(a, b, 0.0009));
    EXPECT_FALSE(AreVeryEqual(a, make(1, 4, {1, 2, 3, 4}), 1.0));
}

TEST(Matriu, IdentityAndConcatenation)
{
    EXPECT_TRUE(vantrel::I(2) == make(2, 2, {1, 0, 0, 1}));
    Matriu a = make(2, 1, {1, 2});
    Matriu b = make(2, 2, {3, 4, 5, 6});
    EXPECT_TRUE((a & b) == make(2, 3, {1, 3, 4, 2, 5, 6}));
    EXPECT_TRUE((Matriu() & b) == b);
    Matriu c = make(1, 2, {7, 8});
    EXPECT_TRUE((b | c) == make(3, 2, {3, 4, 5, 6, 7, 8}));
    EXPECT_TRUE((Matriu() | c) == c);
    // A chain started from an empty matrix.
    Matriu chain;
    chain = chain | c;
    chain = chain | c;
    EXPECT_TRUE(chain == make(2, 2, {7, 8, 7, 8}));
}

TEST(MatriuDeathTest, StorageMisuse)
{
    EXPECT_FATAL(Matriu(-1, 2), "Can't create a Matriu of size -1,2");
    EXPECT_FATAL({ Matriu m; m.fill(1.5); }, "Can't fill with 1.5 a zero size Matriu");
    EXPECT_FATAL({ Matriu m; m = 2.0; }, "Can't fill with 2 a zero size Matriu");
    EXPECT_FATAL({ MatriuT m; m = 3.0; }, "Can't fill with 3 a zero size Matriu");
    EXPECT_FATAL({ Matriu m(3, 2); m.redimension(-1, 2); },
                 "Can't redimension to a negative values");
    EXPECT_FATAL({ Matriu m; m.scorn(1.0); }, "Can't scorn a zero size Matriu");
    EXPECT_FATAL(vantrel::I(0), "Can't construct an identity Matriu of size 0");
}

TEST(MatriuDeathTest, ShapeMisuse)
{
    const char* sub =
        "subMatriu incorrect size :\n\tMatriu size nrows=3, ncols=4\n"
        "\tsubMatriu start: row=2, col=1, end: row=4, col=2";
    EXPECT_FATAL({ Matriu m(3, 4); m.subMatriu(2, 4, 1, 2); }, sub);
    EXPECT_FATAL({ Matriu m(3, 4); m.subMatriu(2, 1, 1, 2); }, "subMatriu incorrect size");
    EXPECT_FATAL({ Matriu m(3, 4); m.subMatriu(1, 1, 0, 2); }, "subMatriu incorrect size");
    EXPECT_FATAL({ Matriu a(2, 2); Matriu b; a & b; }, "Can't concatenate a zero size Matriu");
    EXPECT_FATAL({ Matriu a(2, 2); Matriu b; a | b; }, "Can't concatenate a zero size Matriu");
    EXPECT_FATAL({ Matriu a(2, 2); Matriu b(3, 1); a & b; },
                 "Horizontal concatenation with diferent number of rows\n"
                 "\tMatriu 1 : nrows=2, ncols=2\n\tMatriu 2 : nrows=3, ncols=1");
    EXPECT_FATAL({ Matriu a(2, 2); Matriu b(1, 3); a | b; },
                 "Vertical concatenation with diferent number of columns\n"
                 "\tMatriu 1 : nrows=2, ncols=2\n\tMatriu 2 : nrows=1, ncols=3");
}
