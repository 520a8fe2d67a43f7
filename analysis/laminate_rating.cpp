#include "laminate/analysis/laminate_rating.h"

#include <cassert>
#include <cmath>
#include <limits>

#include "laminate/analysis/criterion_path.h"
#include "laminate/laminate/layer_recovery.h"

namespace laminate::analysis {

namespace {

const double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

bool rated(Verdict v)
{
    return v == Verdict::Ok || v == Verdict::Residual || v == Verdict::Never;
}

}  // namespace

int criterionCount()
{
    int n = 0;
    while (kCriteria[n]) n++;
    return n;
}

PlySite plySite(int layer, int layers)
{
    if (layers == 1) return PlySite::Unidirectional;
    return layer == 1 || layer == layers ? PlySite::Outer : PlySite::Embedded;
}

CriterionPly criterionPly(PlyMaterial const& m, double t, PlySite site)
{
    using K = PlyMaterial;
    CriterionPly p;
    p.E1 = m.number(K::E1);
    p.E2 = m.number(K::E2);
    p.nu12 = m.number(K::nu12);
    p.G12 = m.number(K::G12);
    p.t = t;
    p.site = site;
    p.mmPerLength = m.unitSystem() == UnitSystem::NmPa ? 1000.0 : 1.0;
    switch (m.fibreKind()) {
    case Fibre::Carbon: p.fibre = FibreKind::Carbon; break;
    case Fibre::Glass: p.fibre = FibreKind::Glass; break;
    default: p.fibre = FibreKind::Other; break;
    }
    if (m.has(K::alpha0)) p.alpha0 = m.number(K::alpha0);
    struct Pair {
        K::Key key;
        PlyValue value;
    };
    Pair const optional[] = {
        {K::Xt, kGivenXt},     {K::Xc, kGivenXc},     {K::Yt, kGivenYt},
        {K::Yc, kGivenYc},     {K::S12, kGivenS12},   {K::S23, kGivenS23},
        {K::e1t, kGivenE1t},   {K::e1c, kGivenE1c},   {K::e2t, kGivenE2t},
        {K::e2c, kGivenE2c},   {K::g12u, kGivenG12u}, {K::GIc, kGivenGIc},
        {K::GIIc, kGivenGIIc}, {K::p12t, kGivenPParT}, {K::p12c, kGivenPParC}};
    for (Pair const& o : optional)
        if (m.has(o.key)) p.set(o.value, m.number(o.key));
    return p;
}

CriterionPly criterionPly(laminate_model::PlyData const& d, PlySite site)
{
    CriterionPly p;
    p.E1 = d.E1;
    p.E2 = d.E2;
    p.nu12 = d.nu12;
    p.G12 = d.G12;
    p.t = d.t;
    p.site = site;
    p.fibre = FibreKind::Other;
    struct Pair {
        double v;
        PlyValue value;
    };
    Pair const strengths[] = {{d.Xt, kGivenXt}, {d.Xc, kGivenXc},   {d.Yt, kGivenYt},
                              {d.Yc, kGivenYc}, {d.S12, kGivenS12}, {d.S23, kGivenS23}};
    for (Pair const& s : strengths)
        if (s.v > 0.0) p.set(s.value, s.v);
    return p;
}

LaminateRating::LaminateRating(LaminateAnalysis const& an, std::vector<CriterionPly> const& plies,
                               double const* alpha, double const* beta)
    : residual_(an, alpha, beta)
{
    if (an.status() != LaminateAnalysis::Ok || plies.size() != an.plies().size()) return;
    if (residual_.status() != ResidualStress::Ok) {
        status_ = Singular;
        return;
    }
    layers_ = an.layers();
    plies_ = plies;
    int const nc = criterionCount();
    prepared_.resize(static_cast<size_t>(nc) * layers_);
    assessed_.resize(layers_);
    for (int k = 1; k <= layers_; k++) assessed_[k - 1] = an.plies()[k - 1].data.flag != 0;
    for (int c = 0; c < nc; c++) setParams(c, nullptr);

    // The mechanical strains at height z are rows 0..2 plus z times rows
    // 3..5 of K^-1 applied to the loads; Qbar and T then give the layer-axes
    // stresses, as the recovery forms them.
    double const* G = an.Kinv().data;
    maps_.resize(2 * static_cast<size_t>(layers_));
    for (int k = 1; k <= layers_; k++) {
        LaminateAnalysis::Ply const& p = an.plies()[k - 1];
        double const z[2] = {p.zTop, p.zBas};
        for (int f = 0; f < 2; f++) {
            FaceMap& out = maps_[2 * (k - 1) + f];
            for (int j = 0; j < 8; j++) {
                double const e[3] = {G[0 * 8 + j] + z[f] * G[3 * 8 + j],
                                     G[1 * 8 + j] + z[f] * G[4 * 8 + j],
                                     G[2 * 8 + j] + z[f] * G[5 * 8 + j]};
                double s[3], ply[3];
                laminate_model::product<3>(p.Qbar, e, s);
                laminate_model::product<3>(p.T, s, ply);
                for (int i = 0; i < 3; i++) out.m[i * 8 + j] = ply[i];
            }
        }
    }
    status_ = Ok;
}

PlyStress LaminateRating::mechanical(int layer, Face face, double const loads[8]) const
{
    assert(layer >= 1 && layer <= layers_ && face != Face::None);
    double const* m = maps_[2 * (layer - 1) + (face == Face::Bottom)].m;
    double s[3];
    for (int i = 0; i < 3; i++, m += 8) {
        double sum = 0.0;
        for (int j = 0; j < 8; j++) sum += m[j] * loads[j];
        s[i] = sum;
    }
    return PlyStress{s[0], s[1], s[2]};
}

FaceRating LaminateRating::rateFace(int criterion, int layer, Face face,
                                    RatingLoad const& load) const
{
    FaceRating out{Rating{Verdict::NoData, 0.0, -1}, Face::None, {0, 0, 0}, {0, 0, 0}};
    if (status_ != Ok) return out;
    PreparedCriterion const& p = prepared(criterion, layer);
    if (p.status != Verdict::Ok) {
        out.rating.verdict = p.status;
        if (p.status == Verdict::Unassessed) out.rating.rf = kInf;
        return out;
    }
    out.face = face;
    out.res = residual_.stress(layer, face, load.dT, load.dM);
    out.mech = mechanical(layer, face, load.loads);
    out.rating = rate(p, out.res, out.mech);
    return out;
}

FaceRating LaminateRating::ratePly(int criterion, int layer, RatingLoad const& load) const
{
    FaceRating const top = rateFace(criterion, layer, Face::Top, load);
    if (top.face == Face::None) return top;
    FaceRating const bottom = rateFace(criterion, layer, Face::Bottom, load);
    bool const topRated = rated(top.rating.verdict), bottomRated = rated(bottom.rating.verdict);
    if (topRated != bottomRated) return topRated ? bottom : top;  // the face not rated
    if (top.rating.rf != bottom.rating.rf) return bottom.rating.rf < top.rating.rf ? bottom : top;
    if (!topRated) return top;
    PreparedCriterion const& p = prepared(criterion, layer);
    auto at = [](FaceRating const& f) {
        return PlyStress{f.res.s1 + f.mech.s1, f.res.s2 + f.mech.s2, f.res.t12 + f.mech.t12};
    };
    return assess(p, at(bottom)).index > assess(p, at(top)).index ? bottom : top;
}

void LaminateRating::setParams(int criterion, double const* params)
{
    for (int k = 1; k <= layers_; k++) {
        PreparedCriterion& p = prepared_[criterion * layers_ + k - 1];
        analysis::prepare(*kCriteria[criterion], plies_[k - 1], params, p);
        if (!assessed_[k - 1]) p.status = Verdict::Unassessed;
    }
}

LaminateFailure LaminateRating::firstPlyFailure(int criterion, RatingLoad const& load) const
{
    LaminateFailure best{Verdict::Never, kInf, 0, Face::None, -1};
    if (status_ != Ok) return LaminateFailure{Verdict::NoData, 0.0, 0, Face::None, -1};
    LaminateFailure unrated{Verdict::Ok, 0.0, 0, Face::None, -1};
    bool const residual = load.dT != 0.0 || load.dM != 0.0;
    for (int k = 1; k <= layers_; k++) {
        PreparedCriterion const& p = prepared(criterion, k);
        if (p.status != Verdict::Ok) {
            if (unrated.ply == 0 && p.status != Verdict::Unassessed)
                unrated = LaminateFailure{p.status, 0.0, k, Face::None, -1};
            continue;
        }
        for (Face face : {Face::Top, Face::Bottom}) {
            PlyStress const res =
                residual ? residual_.stress(k, face, load.dT, load.dM) : PlyStress{0, 0, 0};
            PlyStress const mech = mechanical(k, face, load.loads);
            // A face whose index provably stays below 1 up to the smallest
            // factor so far cannot fail first, nor on residual stresses
            // alone, nor be refused: it need not be rated.
            if (best.rf < kInf && p.info->below &&
                criterion_path::staysBelow(p, res, mech, best.rf))
                continue;
            Rating const r = rate(p, res, mech);
            if (!rated(r.verdict)) {
                if (unrated.ply == 0) unrated = LaminateFailure{r.verdict, 0.0, k, face, -1};
                continue;
            }
            if (r.verdict == Verdict::Residual)
                return LaminateFailure{Verdict::Residual, 0.0, k, face, r.mode};
            if (r.rf < best.rf) best = LaminateFailure{r.verdict, r.rf, k, face, r.mode};
        }
    }
    return unrated.ply != 0 ? unrated : best;
}

LaminateRating::Status LaminateRating::remap(LaminateAnalysis const& an, double const* alpha,
                                             double const* beta)
{
    if (an.status() != LaminateAnalysis::Ok || an.layers() != layers_ ||
        static_cast<int>(maps_.size()) != 2 * layers_)
        return status_ = NotPrepared;
    if (alpha != nullptr || beta != nullptr) {
        residual_ = ResidualStress(an, alpha, beta);
        if (residual_.status() != ResidualStress::Ok) return status_ = Singular;
    }
    // As the constructor forms them, with T Qbar taken once per layer: rows
    // 0..2 plus z times rows 3..5 of K^-1, then T Qbar.
    double const* G = an.Kinv().data;
    for (int k = 1; k <= layers_; k++) {
        LaminateAnalysis::Ply const& p = an.plies()[k - 1];
        double TQ[9];
        for (int i = 0; i < 3; i++)
            for (int j = 0; j < 3; j++)
                TQ[3 * i + j] = p.T[3 * i] * p.Qbar[j] + p.T[3 * i + 1] * p.Qbar[3 + j] +
                                p.T[3 * i + 2] * p.Qbar[6 + j];
        double const z[2] = {p.zTop, p.zBas};
        for (int f = 0; f < 2; f++) {
            FaceMap& out = maps_[2 * (k - 1) + f];
            for (int j = 0; j < 8; j++) {
                double const e[3] = {G[0 * 8 + j] + z[f] * G[3 * 8 + j],
                                     G[1 * 8 + j] + z[f] * G[4 * 8 + j],
                                     G[2 * 8 + j] + z[f] * G[5 * 8 + j]};
                double ply[3];
                laminate_model::product<3>(TQ, e, ply);
                for (int i = 0; i < 3; i++) out.m[i * 8 + j] = ply[i];
            }
        }
    }
    return status_ = Ok;
}

std::vector<RatedEnvelopePoint> ratedEnvelope(LaminateRating const& rating, int i, int j,
                                              int criterion, int points, double dT, double dM)
{
    std::vector<RatedEnvelopePoint> out;
    if (i < 1 || i > 8 || j < 1 || j > 8 || i == j || points <= 0) return out;
    out.reserve(points);
    double const pi = std::acos(-1.0);
    // cos and sin of a multiple of pi/2 come out near 1e-16, not 0.
    auto direction = [](double v) { return std::fabs(v) < 1e-12 ? 0.0 : v; };
    auto along = [](double factor, double d) { return d == 0.0 ? 0.0 : factor * d; };
    for (int r = 0; r < points; r++) {
        double const theta = 2.0 * pi * r / points;
        double const dx = direction(std::cos(theta)), dy = direction(std::sin(theta));
        double loads[8] = {0, 0, 0, 0, 0, 0, 0, 0};
        loads[i - 1] = dx;
        loads[j - 1] = dy;
        LaminateFailure const f = rating.firstPlyFailure(criterion, RatingLoad{loads, dT, dM});
        if (rated(f.verdict))
            out.push_back(RatedEnvelopePoint{along(f.rf, dx), along(f.rf, dy), f});
        else
            out.push_back(RatedEnvelopePoint{kNaN, kNaN, f});
    }
    return out;
}

}  // namespace laminate::analysis
