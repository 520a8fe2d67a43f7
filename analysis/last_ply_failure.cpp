#include "laminate/analysis/last_ply_failure.h"

#include <cstring>
#include <limits>

namespace laminate::analysis {

namespace {

const double kInf = std::numeric_limits<double>::infinity();
// Reserve factors this close (relative) to the smallest fail in one step.
const double kSameStep = 1e-9;

bool inRange(double v, bool withOne)
{
    return v >= 0.0 && (withOne ? v <= 1.0 : v < 1.0);
}

bool rated(Verdict v)
{
    return v == Verdict::Ok || v == Verdict::Residual || v == Verdict::Never;
}

}  // namespace

bool Degradation::valid() const
{
    return inRange(fibreE1, false) && inRange(fibreE2, true) && inRange(fibreG12, true) &&
           inRange(matrixE2, false) && inRange(matrixG12, false);
}

bool fibreMode(char const* word)
{
    return word != nullptr &&
           (std::strncmp(word, "FF", 2) == 0 || std::strncmp(word, "fibre", 5) == 0);
}

LastPlyFailure::LastPlyFailure(LaminateAnalysis const& an, LaminateRating const& rating,
                               double const* alpha, double const* beta,
                               Degradation const& degradation)
    : degradation_(degradation), intact_(&an), intactRating_(&rating), work_(rating)
{
    if (!degradation.valid()) {
        status_ = BadDegradation;
        return;
    }
    if (an.status() != LaminateAnalysis::Ok || rating.status() != LaminateRating::Ok ||
        rating.layers() != an.layers())
        return;
    layers_ = an.layers();
    if (alpha != nullptr) alpha_.assign(alpha, alpha + 2 * layers_);
    if (beta != nullptr) beta_.assign(beta, beta + 2 * layers_);
    state_.assign(layers_, PlyState::Intact);
    factors_.assign(3 * static_cast<size_t>(layers_), 1.0);
    zeroed_.assign(3 * static_cast<size_t>(layers_), 1.0);
    ratings_.resize(layers_);
    current_.prepareScaled(an, factors_.data());
    discounted_.prepareScaled(an, factors_.data());
    status_ = Ok;
}

LastPlyFailure::PlyRating LastPlyFailure::ratePly(LaminateRating const& r, int criterion,
                                                  int layer, RatingLoad const& load) const
{
    if (state_[layer - 1] == Intact) {
        FaceRating const f = r.ratePly(criterion, layer, load);
        return PlyRating{f.rating, f.face};
    }
    // A cracked ply: its fibre stress alone, and only its fibre modes.
    PreparedCriterion const& p = r.prepared(criterion, layer);
    PlyRating best{Rating{Verdict::Never, kInf, -1}, Face::None};
    bool const residual = load.dT != 0.0 || load.dM != 0.0;
    for (Face face : {Face::Top, Face::Bottom}) {
        PlyStress const res =
            residual ? r.residual().stress(layer, face, load.dT, load.dM) : PlyStress{0, 0, 0};
        PlyStress const mech = r.mechanical(layer, face, load.loads);
        Rating const g = rate(p, PlyStress{res.s1, 0, 0}, PlyStress{mech.s1, 0, 0});
        if (!rated(g.verdict)) return PlyRating{g, face};
        if (g.verdict == Verdict::Never || !fibreMode(p.info->modes[g.mode])) continue;
        if (g.rf < best.rating.rf) best = PlyRating{g, face};
    }
    return best;
}

bool LastPlyFailure::degrade(RatingLoad const& load)
{
    Degradation const& d = degradation_;
    for (int k = 0; k < layers_; k++) {
        double* f = &factors_[3 * k];
        double* z = &zeroed_[3 * k];
        unsigned const st = state_[k];
        f[0] = f[1] = f[2] = 1.0;
        if (st & Cracked) f[1] = d.matrixE2, f[2] = d.matrixG12;
        if (st & Broken) {
            // A ply that cracked first keeps the smaller factor of each.
            f[0] = d.fibreE1;
            if (d.fibreE2 < f[1]) f[1] = d.fibreE2;
            if (d.fibreG12 < f[2]) f[2] = d.fibreG12;
        }
        for (int i = 0; i < 3; i++) z[i] = f[i] < 1.0 ? 0.0 : 1.0;
    }
    current_.prepareScaled(*intact_, factors_.data());
    discounted_.prepareScaled(*intact_, zeroed_.data());
    bool const residual = load.dT != 0.0 || load.dM != 0.0;
    work_.remap(current_, residual && !alpha_.empty() ? alpha_.data() : nullptr,
                residual && !beta_.empty() ? beta_.data() : nullptr);
    return discounted_.carries(load.loads);
}

void LastPlyFailure::run(int criterion, RatingLoad const& load, LpfResult& out)
{
    out.events.clear();
    out.end = LpfResult::End::Unloaded;
    out.last = kInf;
    out.verdict = Verdict::Never;
    out.ply = 0;
    out.face = Face::None;
    if (status_ != Ok) {
        out.end = LpfResult::End::Unrated;
        out.last = 0.0;
        out.verdict = Verdict::NoData;
        return;
    }
    for (unsigned char& s : state_) s = Intact;
    // The first step rates the intact laminate as the rating itself does.
    LaminateAnalysis const* an = intact_;
    LaminateRating const* rating = intactRating_;
    CriterionInfo const& info = *rating->prepared(criterion, 1).info;
    bool const residual = load.dT != 0.0 || load.dM != 0.0;
    double factor = 0.0;
    for (;;) {
        double smallest = kInf;
        for (int k = 1; k <= layers_; k++) {
            PlyRating& r = ratings_[k - 1];
            if (state_[k - 1] & Broken) {
                r = PlyRating{Rating{Verdict::Never, kInf, -1}, Face::None};
                continue;
            }
            r = ratePly(*rating, criterion, k, load);
            if (r.rating.verdict == Verdict::Unassessed) {
                r = PlyRating{Rating{Verdict::Never, kInf, -1}, Face::None};
                continue;
            }
            if (!rated(r.rating.verdict)) {
                out.end = LpfResult::End::Unrated;
                out.last = 0.0;
                out.verdict = r.rating.verdict;
                out.ply = k;
                out.face = r.face;
                return;
            }
            if (r.rating.rf < smallest) smallest = r.rating.rf;
        }
        if (!(smallest < kInf)) {
            out.end = out.events.empty() ? LpfResult::End::Unloaded : LpfResult::End::Carried;
            out.last = kInf;
            return;
        }
        if (smallest > factor) factor = smallest;

        // The laminate's strains at the factor, before the failures.
        double loads[8], strains[8], free[6] = {0, 0, 0, 0, 0, 0};
        for (int i = 0; i < 8; i++) loads[i] = factor * load.loads[i];
        an->strains(loads, strains);
        if (residual) rating->residual().freeStrains(load.dT, load.dM, free);
        for (int i = 0; i < 6; i++) strains[i] += free[i];

        double const limit = smallest + kSameStep * smallest;
        for (int k = 1; k <= layers_; k++) {
            PlyRating const& r = ratings_[k - 1];
            if (!(r.rating.rf <= limit)) continue;
            LpfEvent e;
            e.factor = factor;
            e.ply = k;
            e.face = r.face;
            e.mode = r.rating.mode;
            e.fibre = r.rating.mode >= 0 && fibreMode(info.modes[r.rating.mode]);
            std::memcpy(e.strains, strains, sizeof strains);
            out.events.push_back(e);
            state_[k - 1] |= e.fibre ? Broken : Cracked;
        }
        out.last = factor;

        // Plies that are not assessed (a core) never break: the run ends
        // when every other one has.
        bool broken = true;
        for (int k = 1; k <= layers_; k++)
            broken = broken && ((state_[k - 1] & Broken) ||
                                intactRating_->prepared(criterion, k).status == Verdict::Unassessed);
        if (broken) {
            out.end = LpfResult::End::Broken;
            return;
        }
        if (!degrade(load)) {
            out.end = LpfResult::End::Singular;
            return;
        }
        an = &current_;
        rating = &work_;
    }
}

}  // namespace laminate::analysis
