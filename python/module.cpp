// The Python module laminate (its binary part, laminate._laminate): ply
// materials, laminates from a record, a stacking sequence or a list of
// plies, and their analysis, answering NumPy arrays.  The numbers are those
// of the analysis floor, the same the Tcl commands give.
#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "errors.h"
#include "fpf_batch.h"
#include "laminate/analysis/envelope.h"
#include "laminate/analysis/last_ply_failure.h"
#include "laminate/analysis/layup_notation.h"
#include "laminate/analysis/material_library.h"
#include "prepared_laminate.h"

namespace py = pybind11;
using laminate::analysis::Criterion;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::PlyMaterial;
using pylaminate::Error;
using pylaminate::ErrorKind;
using pylaminate::FailureRow;
using pylaminate::Material;
using pylaminate::MaterialRef;
using pylaminate::PreparedLaminate;

namespace {

using Loads = py::array_t<double, py::array::c_style | py::array::forcecast>;

// ---- conversions -------------------------------------------------------------

py::array_t<double> vector(double const* v, py::ssize_t n)
{
    py::array_t<double> a(n);
    std::memcpy(a.mutable_data(), v, sizeof(double) * static_cast<size_t>(n));
    return a;
}

py::array_t<double> matrix(vantrel::Matriu const& m)
{
    py::array_t<double> a({static_cast<py::ssize_t>(m.nrows), static_cast<py::ssize_t>(m.ncols)});
    std::memcpy(a.mutable_data(), m.data, sizeof(double) * static_cast<size_t>(m.nrows * m.ncols));
    return a;
}

// A value of a material property as text, for the record's number grammar:
// a float by its shortest repr (which reads back to the same double), any
// other object by str().
std::string propertyText(py::handle value)
{
    if (py::isinstance<py::bool_>(value))
        throw py::type_error("a material property is a number or a word, not a bool");
    if (py::isinstance<py::float_>(value)) return py::repr(value).cast<std::string>();
    return py::str(value).cast<std::string>();
}

std::vector<std::pair<std::string, std::string>> propertyPairs(py::handle props)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    for (auto item : py::reinterpret_borrow<py::dict>(props))
        pairs.emplace_back(py::str(item.first).cast<std::string>(), propertyText(item.second));
    return pairs;
}

// A material as a dict in key order: every value it has (numbers as
// floats), or with given=True only the given ones, as written.
py::dict materialDict(PlyMaterial const& m, bool givenOnly)
{
    py::dict d;
    for (int i = 0; i < PlyMaterial::kKeyCount; ++i) {
        PlyMaterial::Key const k = static_cast<PlyMaterial::Key>(i);
        if (givenOnly ? !m.given(k) : !m.has(k)) continue;
        PlyMaterial::KeyRow const& row = PlyMaterial::kKeys[k];
        if (givenOnly || row.kind == PlyMaterial::ONE_OF || row.kind == PlyMaterial::FREE_TEXT)
            d[row.name] = m.text(k);
        else
            d[row.name] = m.number(k);
    }
    return d;
}

Criterion const kModelOrder[] = {Criterion::TsaiWu, Criterion::Hashin, Criterion::LaRC04};

// The loads of one case: 8 finite numbers, tiny ones snapped to 0.
void oneCase(Loads const& loads, double out[8])
{
    if (loads.ndim() != 1 || loads.shape(0) != 8) {
        std::string shape = "(";
        for (py::ssize_t i = 0; i < loads.ndim(); i++)
            shape += (i ? ", " : "") + std::to_string(loads.shape(i));
        throw Error(ErrorKind::Loads,
                    "loads: expected 8 load values N1 N2 N12 M1 M2 M12 Q1 Q2, got shape " + shape +
                        (loads.ndim() == 1 ? ",)" : ")"),
                    {"LOADS", "COUNT"});
    }
    pylaminate::checkLoads(loads.data(), 1, true);
    pylaminate::snapLoads(loads.data(), out);
}

// A first-ply failure as a dict of words, from its row.
py::dict failureDict(int id, FailureRow const& row)
{
    std::vector<std::string> const modes = pylaminate::modeWords(id);
    py::dict d;
    d["factor"] = row.factor;
    d["ply"] = row.ply;
    d["face"] = pylaminate::kFaceWords[row.face];
    d["mode"] = modes[row.mode];
    d["outcome"] = pylaminate::kOutcomeWords[row.outcome];
    d["verdict"] = pylaminate::kVerdictWords[row.verdict];
    d["mos"] = row.mos;
    return d;
}

// The structured dtype of first-ply-failure answers (FailureRow), after
// the fields before it (the envelope's x and y).
py::dtype failureDtype(bool point)
{
    py::list names, formats, offsets;
    size_t const at = point ? 16 : 0;
    if (point) {
        names.append("x"), formats.append("<f8"), offsets.append(0);
        names.append("y"), formats.append("<f8"), offsets.append(8);
    }
    char const* const fields[] = {"factor", "mos", "ply", "face", "mode", "outcome", "verdict"};
    char const* const types[] = {"<f8", "<f8", "<i4", "u1", "u1", "u1", "u1"};
    size_t const where[] = {offsetof(FailureRow, factor), offsetof(FailureRow, mos), offsetof(FailureRow, ply),
                            offsetof(FailureRow, face),   offsetof(FailureRow, mode), offsetof(FailureRow, outcome),
                            offsetof(FailureRow, verdict)};
    for (int i = 0; i < 7; i++) names.append(fields[i]), formats.append(types[i]), offsets.append(at + where[i]);
    py::dict layout;
    layout["names"] = names;
    layout["formats"] = formats;
    layout["offsets"] = offsets;
    layout["itemsize"] = at + sizeof(FailureRow);
    return py::dtype::from_args(layout);
}

// ---- options -----------------------------------------------------------------

// A factor of safety, temperature or moisture change: a finite number (fos
// above 0), with the message and code the Tcl options give, named without
// the dash.
double conditionValue(py::handle value, char const* name)
{
    double v = NAN;
    try {
        v = py::cast<double>(value);
    } catch (py::cast_error const&) {
    }
    bool const fos = std::strcmp(name, "fos") == 0;
    if (!std::isfinite(v) || (fos && !(v > 0.0)) || py::isinstance<py::bool_>(value))
        throw Error(ErrorKind::Laminate,
                    std::string(name) + ": expected a finite number" + (fos ? " above 0" : "") + ", got \"" +
                        pylaminate::shown(py::str(value).cast<std::string>()) + "\"",
                    {"OPTION", name});
    return v;
}

// The conditions of a rating: dT, dM, fos read, and checked against the
// laminate and the criteria as the Tcl commands check them.
pylaminate::BatchOptions conditions(PreparedLaminate const& p, std::vector<pylaminate::CriterionChoice> const& chosen,
                                    py::handle dT, py::handle dM, py::handle fos)
{
    pylaminate::BatchOptions o;
    o.dT = conditionValue(dT, "dT");
    o.dM = conditionValue(dM, "dM");
    o.fos = conditionValue(fos, "fos");
    laminate::analysis::ResidualStress const& r = p.rating().residual();
    if (o.dT != 0.0 && !r.hasThermal())
        throw Error(ErrorKind::Laminate,
                    "laminate has no thermal expansion coefficients: dT needs alpha1 and alpha2 of every ply "
                    "(a layup of materials that give them)",
                    {"THERMAL", "NOALPHA", ""});
    if (o.dM != 0.0 && !r.hasMoisture())
        throw Error(ErrorKind::Laminate,
                    "laminate has no moisture expansion coefficients: dM needs beta1 and beta2 of every ply "
                    "(a layup of materials that give them)",
                    {"THERMAL", "NOBETA", ""});
    if (o.dT == 0.0 && o.dM == 0.0) return o;
    for (pylaminate::CriterionChoice const& c : chosen) {
        if (!c.model()) continue;
        std::string const name = pylaminate::kCriterionNames[c.id];
        throw Error(ErrorKind::Laminate,
                    "criterion \"" + name + "\" is the model's own index and holds no residual stresses: with "
                    "dT or dM name criteria of the catalogue (tsaiwu2d, hashin2d, puck, larc03 ...)",
                    {"THERMAL", "MODELCRITERION", name});
    }
    return o;
}

// ---- the laminate ------------------------------------------------------------

// A reported criterion value as laminate::evaluate shows it: not assessed as 0.
double shownIndex(double v) { return v == laminate::analysis::kNotAssessed ? 0.0 : v; }

py::dict plyDict(LaminateAnalysis const& an, int layer, laminate::analysis::PlyResult const& r)
{
    laminate_model::LayerState const& s = r.state;
    py::dict d;
    d["FS_TW"] = shownIndex(r.tsaiWu);
    d["stresses"] = vector(s.stressesLam, 3);
    d["strains"] = vector(s.strainsLam, 3);
    d["stresstop"] = vector(s.stressesTopLam, 3);
    d["stressbas"] = vector(s.stressesBasLam, 3);
    double const ss[3] = {s.shearStressesLam[0], s.shearStressesLam[1], s.stressesLam[2]};
    d["s_stresses"] = vector(ss, 3);
    double const se[3] = {s.shearStrainsLam[0], s.shearStrainsLam[1], s.strainsLam[2]};
    d["s_strains"] = vector(se, 3);
    for (int m = 0; m < 6; m++) d[("FS_LaRCm" + std::to_string(m + 1)).c_str()] = shownIndex(r.larc04[m]);
    char const* const axes[3] = {"1", "2", "3"};
    for (int i = 0; i < 3; i++) d[(std::string("stress") + axes[i] + "_lam").c_str()] = s.stressesLam[i];
    for (int i = 0; i < 3; i++) d[(std::string("strain") + axes[i] + "_lam").c_str()] = s.strainsLam[i];
    for (int i = 0; i < 3; i++) d[(std::string("stress") + axes[i] + "_t_lam").c_str()] = s.stressesTopLam[i];
    for (int i = 0; i < 3; i++) d[(std::string("stress") + axes[i] + "_b_lam").c_str()] = s.stressesBasLam[i];
    d["shearStress23_lam"] = s.shearStressesLam[0];
    d["shearStress13_lam"] = s.shearStressesLam[1];
    d["shearStrain23_lam"] = s.shearStrainsLam[0];
    d["shearStrain13_lam"] = s.shearStrainsLam[1];
    d["FS_TW_simple"] = shownIndex(r.tsaiWuSimple);
    d["hashin_matrix"] = shownIndex(r.hashinMatrix);
    d["hashin_fibre"] = shownIndex(r.hashinFibre);
    d["angle"] = an.angle(layer);
    double const z[2] = {an.zLow(layer), an.zHigh(layer)};
    d["z"] = vector(z, 2);
    d["flag"] = an.plies()[layer - 1].data.flag;
    d["xy_stresstop"] = vector(s.stressesTop, 3);
    d["xy_stressbas"] = vector(s.stressesBas, 3);
    double mid[3];
    for (int i = 0; i < 3; i++) mid[i] = 0.5 * (s.stressesTop[i] + s.stressesBas[i]);
    d["xy_stresses"] = vector(mid, 3);
    d["xy_straintop"] = vector(s.strainsTop, 3);
    d["xy_strainbas"] = vector(s.strainsBas, 3);
    for (int i = 0; i < 3; i++) mid[i] = 0.5 * (s.strainsTop[i] + s.strainsBas[i]);
    d["xy_strains"] = vector(mid, 3);
    return d;
}

py::dict engineeringDict(PreparedLaminate const& p)
{
    using E = laminate::analysis::EngineeringConstants;
    E const e = p.engineering();
    py::dict d;
    d["status"] = e.status == E::Ok            ? "ok"
                  : e.status == E::NotPositive ? "notpositive"
                  : e.status == E::Singular    ? "singular"
                                               : "notprepared";
    if (e.status != E::Ok && e.status != E::NotPositive) return d;
    py::array_t<double> abd({6, 6});
    std::memcpy(abd.mutable_data(), e.compliance, sizeof e.compliance);
    d["abd"] = abd;
    if (e.status != E::Ok) return d;
    d["Ex"] = e.Ex, d["Ey"] = e.Ey, d["Gxy"] = e.Gxy, d["nuxy"] = e.nuxy, d["nuyx"] = e.nuyx;
    d["Exb"] = e.Exb, d["Eyb"] = e.Eyb, d["Gxyb"] = e.Gxyb, d["nuxyb"] = e.nuxyb, d["nuyxb"] = e.nuyxb;
    if (e.hasWeight) d["weight"] = e.weight;
    if (e.hasThermal) {
        d["alpha"] = vector(e.thermal, 3);
        d["alpha_curvature"] = vector(e.thermal + 3, 3);
    }
    if (e.hasMoisture) {
        d["beta"] = vector(e.moisture, 3);
        d["beta_curvature"] = vector(e.moisture + 3, 3);
    }
    return d;
}

// What Python holds: the prepared laminate, shared and never changed.
struct Laminate {
    std::shared_ptr<PreparedLaminate const> p;
};

double plyNumber(py::handle value, int ply, char const* what)
{
    double v = py::cast<double>(value);
    bool const thickness = std::strcmp(what, "thickness") == 0;
    char const* rule = !std::isfinite(v) ? "must be finite" : thickness && !(v > 0) ? "must be > 0" : nullptr;
    if (rule != nullptr) {
        std::string const n = std::to_string(ply);
        throw Error(ErrorKind::Layup,
                    "ply " + n + ", " + what + ": " + rule + ", got " + py::repr(value).cast<std::string>(),
                    {"LAYUP", "PLY", n});
    }
    return v;
}

double defaultThickness(py::object thickness)
{
    if (thickness.is_none()) return 0.0;
    double const t = py::cast<double>(thickness);
    if (!(t > 0) || !std::isfinite(t))
        throw Error(ErrorKind::Layup,
                    "thickness: must be a finite number > 0, got " + py::repr(thickness).cast<std::string>(),
                    {"OPTION", "thickness"});
    return t;
}

Laminate fromLayup(std::string const& text, py::object material, py::object thickness)
{
    laminate::analysis::LayupNotation notation;
    if (!notation.parse(text))
        throw Error(ErrorKind::Layup, "layup " + pylaminate::shown(text) + ", " + notation.refusal().message(),
                    {"LAYUP", "SYNTAX", std::to_string(notation.refusal().column)});
    if (material.is_none())
        throw Error(ErrorKind::Layup, "layup " + pylaminate::shown(text) + ": a stacking sequence needs a material",
                    {"LAYUP", "MATERIAL", "0", ""});
    MaterialRef const m = py::cast<std::shared_ptr<Material>>(material);
    double const t = defaultThickness(thickness);
    std::vector<pylaminate::Ply> plies;
    for (double angle : notation.angles()) plies.push_back({m, angle, 0.0});
    return Laminate{PreparedLaminate::fromPlies(plies, t, text)};
}

Laminate fromPlies(py::iterable list, py::object thickness)
{
    std::vector<pylaminate::Ply> plies;
    int n = 0;
    for (py::handle item : list) {
        ++n;
        py::sequence ply;
        if (py::isinstance<py::sequence>(item) && !py::isinstance<py::str>(item)) ply = py::reinterpret_borrow<py::sequence>(item);
        if (!ply || ply.size() < 2 || ply.size() > 3 || !py::isinstance<Material>(ply[0])) {
            std::string const k = std::to_string(n);
            throw Error(ErrorKind::Layup,
                        "ply " + k + ": expected (material, angle[, thickness]), got " +
                            pylaminate::shown(py::repr(item).cast<std::string>()),
                        {"LAYUP", "PLY", k});
        }
        pylaminate::Ply p{ply[0].cast<std::shared_ptr<Material>>(), plyNumber(ply[1], n, "angle"),
                          ply.size() == 3 ? plyNumber(ply[2], n, "thickness") : 0.0};
        plies.push_back(p);
    }
    return Laminate{PreparedLaminate::fromPlies(plies, defaultThickness(thickness), "")};
}

py::dict abd(Laminate const& self)
{
    LaminateAnalysis const& an = self.p->analysis();
    py::dict d;
    d["A"] = matrix(an.A());
    d["B"] = matrix(an.B());
    d["D"] = matrix(an.D());
    d["H"] = matrix(an.H());
    d["K"] = matrix(an.K());
    d["thickness"] = an.thickness();
    d["engineering"] = engineeringDict(*self.p);
    return d;
}

py::dict evaluate(Laminate const& self, Loads loads)
{
    double l[8];
    oneCase(loads, l);
    LaminateAnalysis const& an = self.p->analysis();
    laminate::analysis::Evaluation ev;
    an.evaluate(l, ev);
    py::list plies;
    for (int k = 1; k <= an.layers(); k++) plies.append(plyDict(an, k, ev.plies[k - 1]));
    py::dict fpf;
    for (int c = 0; c < pylaminate::kModelCriteria; c++) {
        FailureRow row;
        pylaminate::fillRow(c, an.firstPlyFailure(l, kModelOrder[c]), 1.0, row);
        fpf[pylaminate::kCriterionNames[c]] = failureDict(c, row);
    }
    std::vector<laminate::analysis::ShearPoint> points;
    if (self.p->shear().status() == laminate::analysis::InterlaminarShear::Ok) self.p->shear().profile(l, points);
    py::array_t<double> shear({static_cast<py::ssize_t>(points.size()), py::ssize_t(3)});
    double* out = shear.mutable_data();
    for (size_t i = 0; i < points.size(); i++) {
        out[3 * i] = points[i].z;
        out[3 * i + 1] = points[i].xz;
        out[3 * i + 2] = points[i].yz;
    }
    py::dict d;
    d["strains"] = vector(ev.strains, 8);
    d["plies"] = plies;
    d["fpf"] = fpf;
    d["interlaminar"] = shear;
    return d;
}

py::array fpf(Laminate const& self, Loads loads, std::string const& criterionWord, py::handle dT, py::handle dM,
              py::handle fos, int threads)
{
    pylaminate::CriterionChoice const c = pylaminate::criterionChoice(criterionWord);
    if (threads < 1)
        throw Error(ErrorKind::Laminate, "threads: expected an integer >= 1, got " + std::to_string(threads),
                    {"OPTION", "threads"});
    pylaminate::BatchOptions opt = conditions(*self.p, {c}, dT, dM, fos);
    opt.criterion = c;
    bool const single = loads.ndim() == 1;
    if ((loads.ndim() != 1 && loads.ndim() != 2) || loads.shape(loads.ndim() - 1) != 8) {
        std::string shape = "(";
        for (py::ssize_t i = 0; i < loads.ndim(); i++) shape += (i ? ", " : "") + std::to_string(loads.shape(i));
        throw Error(ErrorKind::Loads,
                    "loads: expected an array of shape (8,) or (n, 8) of load values N1 N2 N12 M1 M2 M12 Q1 Q2, "
                    "got shape " + shape + (loads.ndim() == 1 ? ",)" : ")"),
                    {"LOADS", "COUNT"});
    }
    size_t const rows = single ? 1 : static_cast<size_t>(loads.shape(0));
    std::vector<py::ssize_t> shape;
    if (!single) shape.push_back(static_cast<py::ssize_t>(rows));
    py::array out(failureDtype(false), shape);
    FailureRow* rowsOut = static_cast<FailureRow*>(out.mutable_data());
    double const* in = loads.data();
    std::shared_ptr<PreparedLaminate const> keep = self.p;
    {
        py::gil_scoped_release release;
        pylaminate::checkLoads(in, rows, single);
        pylaminate::rateRows(keep->analysis(), keep->rating(), opt, in, rows, rowsOut, threads);
    }
    return out;
}

py::array envelope(Laminate const& self, std::pair<int, int> plane, std::string const& criterionWord, int points,
                   py::handle dT, py::handle dM, py::handle fos)
{
    pylaminate::CriterionChoice const c = pylaminate::criterionChoice(criterionWord);
    if (points < 1 || points > 100000)
        throw Error(ErrorKind::Laminate, "points: expected an integer from 1 to 100000, got " + std::to_string(points),
                    {"OPTION", "points"});
    int const i = plane.first, j = plane.second;
    if (i < 1 || i > 8 || j < 1 || j > 8 || i == j)
        throw Error(ErrorKind::Laminate,
                    "plane: expected two different load components from 1 to 8, got (" + std::to_string(i) + ", " +
                        std::to_string(j) + ")",
                    {"PLANE", "INVALID"});
    pylaminate::BatchOptions const opt = conditions(*self.p, {c}, dT, dM, fos);
    py::array out(failureDtype(true), std::vector<py::ssize_t>{static_cast<py::ssize_t>(points)});
    char* base = static_cast<char*>(out.mutable_data());
    size_t const size = 16 + sizeof(FailureRow);
    // A ray without a failure load has no point: inf, and the outcome and
    // verdict say why.  With fos, the envelope of allowable loads.
    auto put = [&opt, base, size](size_t k, double x, double y, bool noPoint, FailureRow const& f) {
        double const xy[2] = {noPoint ? INFINITY : x / opt.fos, noPoint ? INFINITY : y / opt.fos};
        std::memcpy(base + k * size, xy, sizeof xy);
        std::memcpy(base + k * size + 16, &f, sizeof f);
    };
    std::shared_ptr<PreparedLaminate const> keep = self.p;
    {
    py::gil_scoped_release release;
    FailureRow f;
    if (c.model()) {
        std::vector<laminate::analysis::EnvelopePoint> const pts =
            laminate::analysis::envelope(keep->analysis(), i, j, kModelOrder[c.id], points);
        for (size_t k = 0; k < pts.size(); k++) {
            pylaminate::fillRow(c.id, pts[k].failure, opt.fos, f);
            laminate::analysis::Outcome const o = pts[k].failure.outcome;
            put(k, pts[k].x, pts[k].y,
                o == laminate::analysis::Outcome::Undefined || o == laminate::analysis::Outcome::Overflow, f);
        }
    } else {
        std::vector<laminate::analysis::RatedEnvelopePoint> const pts =
            laminate::analysis::ratedEnvelope(keep->rating(), i, j, c.catalogue, points, opt.dT, opt.dM);
        for (size_t k = 0; k < pts.size(); k++) {
            pylaminate::fillRow(pts[k].failure, opt.fos, f);
            put(k, pts[k].x, pts[k].y, f.outcome == static_cast<std::uint8_t>(laminate::analysis::Outcome::Undefined), f);
        }
    }
    }
    return out;
}

// The criteria of rate: a name or a sequence of names of the catalogue,
// each once, in the order named; None: the default set.
std::vector<pylaminate::CriterionChoice> ratingCriteria(py::handle criteria)
{
    std::vector<std::string> words;
    if (criteria.is_none())
        words = {"tsaiwu2d", "puck", "maxstrain"};
    else if (py::isinstance<py::str>(criteria))
        words.push_back(criteria.cast<std::string>());
    else
        for (py::handle w : criteria) words.push_back(py::str(w).cast<std::string>());
    if (words.empty())
        throw Error(ErrorKind::Laminate, "criteria: expected a list of criteria, got \"\"", {"CRITERION", "LIST"});
    std::vector<pylaminate::CriterionChoice> chosen;
    for (std::string const& w : words) {
        pylaminate::CriterionChoice const c = pylaminate::criterionChoice(w);
        if (c.model())
            throw Error(ErrorKind::Laminate,
                        "criterion \"" + w + "\" is the model's own index, without reserve factors or residual "
                        "stresses: rate with tsaiwu2d, hashin2d, larc03 or another criterion of the catalogue",
                        {"CRITERION", "MODEL", w});
        bool seen = false;
        for (pylaminate::CriterionChoice const& d : chosen) seen = seen || d.id == c.id;
        if (!seen) chosen.push_back(c);
    }
    return chosen;
}

bool rated(laminate::analysis::Verdict v)
{
    return v == laminate::analysis::Verdict::Ok || v == laminate::analysis::Verdict::Residual ||
           v == laminate::analysis::Verdict::Never;
}

py::dict rate(Laminate const& self, Loads loads, py::handle criteria, py::handle dT, py::handle dM, py::handle fos)
{
    namespace an = laminate::analysis;
    std::vector<pylaminate::CriterionChoice> const chosen = ratingCriteria(criteria);
    pylaminate::BatchOptions const opt = conditions(*self.p, chosen, dT, dM, fos);
    double l[8];
    oneCase(loads, l);
    an::LaminateRating const& rating = self.p->rating();
    an::RatingLoad const load{l, opt.dT, opt.dM};
    py::list plies;
    for (int k = 1; k <= self.p->analysis().layers(); k++) {
        py::dict ply;
        for (pylaminate::CriterionChoice const& c : chosen) {
            an::CriterionInfo const& info = *an::kCriteria[c.catalogue];
            an::FaceRating const fr = rating.ratePly(c.catalogue, k, load);
            an::Rating const& r = fr.rating;
            py::dict d;
            double index = 0.0;
            std::string indexVerdict = an::verdictWord(r.verdict);
            an::PreparedCriterion const& p = rating.prepared(c.catalogue, k);
            if (rated(r.verdict)) {
                an::PlyStress const now{fr.res.s1 + fr.mech.s1, fr.res.s2 + fr.mech.s2, fr.res.t12 + fr.mech.t12};
                an::Assessment const a = an::assess(p, now);
                index = a.index;
                indexVerdict = an::verdictWord(a.verdict);
            }
            d["rf"] = r.rf;
            d["mos"] = an::marginOfSafety(r.rf, opt.fos);
            d["index"] = index;
            d["index_verdict"] = indexVerdict;
            d["face"] = pylaminate::kFaceWords[static_cast<int>(fr.face)];
            d["mode"] = rated(r.verdict) && r.mode >= 0 ? info.modes[r.mode] : "none";
            d["verdict"] = an::verdictWord(r.verdict);
            // The extra outputs (fracture and misalignment angles) at the
            // failure state.
            if (rated(r.verdict) && r.verdict != an::Verdict::Never) {
                an::Assessment const at = an::assess(p, an::failureState(fr.res, fr.mech, r));
                for (int e = 0; e < an::kMaxExtras && info.extras[e] != nullptr; e++)
                    if (at.extraValid & (1u << e)) d[info.extras[e]] = at.extra[e];
            }
            ply[pylaminate::kCriterionNames[c.id]] = d;
        }
        plies.append(ply);
    }
    py::dict fpf;
    for (pylaminate::CriterionChoice const& c : chosen) {
        FailureRow row;
        pylaminate::fillRow(rating.firstPlyFailure(c.catalogue, load), opt.fos, row);
        fpf[pylaminate::kCriterionNames[c.id]] = failureDict(c.id, row);
    }
    py::dict d;
    d["plies"] = plies;
    d["fpf"] = fpf;
    return d;
}

// ---- last-ply failure --------------------------------------------------------

// A criterion of the catalogue by name, with the message and code Tcl gives
// for one that laminate::lpf does not take (the model's three included).
int catalogueCriterion(std::string const& word)
{
    namespace an = laminate::analysis;
    std::string all;
    for (int c = 0; an::kCriteria[c] != nullptr; c++) {
        if (word == an::kCriteria[c]->name) return c;
        all += std::string(c == 0 ? "" : an::kCriteria[c + 1] == nullptr ? ", or " : ", ") + an::kCriteria[c]->name;
    }
    throw Error(ErrorKind::Laminate, "bad criterion \"" + word + "\": must be " + all, {"CRITERION", word});
}

char const* const kDegradationModes[] = {"fibre", "matrix"};
char const* const kDegradationModuli[] = {"E1", "E2", "G12"};

double* degradationFactor(laminate::analysis::Degradation& d, int mode, int modulus)
{
    double* const fibre[] = {&d.fibreE1, &d.fibreE2, &d.fibreG12};
    double* const matrix[] = {nullptr, &d.matrixE2, &d.matrixG12};
    return mode == 0 ? fibre[modulus] : matrix[modulus];
}

// A factor as given: a finite number, not a bool; false otherwise.
bool factorValue(py::handle value, double& v)
{
    if (py::isinstance<py::bool_>(value)) return false;
    try {
        v = py::cast<double>(value);
    } catch (py::cast_error const&) {
        return false;
    }
    return std::isfinite(v);
}

[[noreturn]] void badFactor(int mode, int modulus, py::handle value)
{
    bool const keepable = mode == 0 && modulus > 0;
    throw Error(ErrorKind::Laminate,
                std::string("degradation: the ") + kDegradationModes[mode] + " factor of " +
                    kDegradationModuli[modulus] + " must be a number from 0 to " + (keepable ? "1" : "below 1") +
                    ", got \"" + py::str(value).cast<std::string>() + "\"",
                {"DEGRADATION", "FACTOR"});
}

// degradation as laminate::lpf's -degradation reads it, from a dict: a mode
// to one factor for every modulus it scales, or to a dict of factors by
// modulus; whatever is left out keeps its default.
laminate::analysis::Degradation degradationOption(py::handle value)
{
    laminate::analysis::Degradation d;
    if (value.is_none()) return d;
    if (!py::isinstance<py::dict>(value))
        throw Error(ErrorKind::Laminate,
                    "degradation: expected a dict {'fibre': F, 'matrix': M} or {'fibre': {'E1': F, 'E2': F, "
                    "'G12': F}, 'matrix': {'E2': F, 'G12': F}}, got \"" +
                        pylaminate::shown(py::str(value).cast<std::string>()) + "\"",
                    {"DEGRADATION", "SHAPE"});
    for (auto item : py::reinterpret_borrow<py::dict>(value)) {
        std::string const key = py::str(item.first).cast<std::string>();
        int const mode = key == "fibre" ? 0 : key == "matrix" ? 1 : -1;
        if (mode < 0)
            throw Error(ErrorKind::Laminate, "bad failure mode \"" + key + "\": must be fibre or matrix",
                        {"DEGRADATION", "MODE", key});
        double v;
        if (factorValue(item.second, v)) {
            for (int m = 0; m < 3; m++)
                if (double* f = degradationFactor(d, mode, m)) *f = v;
            if (!d.valid()) badFactor(mode, mode == 0 ? 0 : 1, item.second);
            continue;
        }
        if (!py::isinstance<py::dict>(item.second) || py::len(item.second) == 0)
            throw Error(ErrorKind::Laminate,
                        "degradation: " + key + " expects a factor or a dict of factors by modulus, got \"" +
                            pylaminate::shown(py::str(item.second).cast<std::string>()) + "\"",
                        {"DEGRADATION", "SHAPE"});
        for (auto pair : py::reinterpret_borrow<py::dict>(item.second)) {
            std::string const name = py::str(pair.first).cast<std::string>();
            int modulus = 0;
            while (modulus < 3 && name != kDegradationModuli[modulus]) modulus++;
            if (modulus == 3 || degradationFactor(d, mode, modulus) == nullptr)
                throw Error(ErrorKind::Laminate,
                            "degradation: " + key + " failure scales " +
                                (mode == 0 ? "E1, E2 and G12" : "E2 and G12") + ", not \"" + name + "\"",
                            {"DEGRADATION", "MODULUS", name});
            double* f = degradationFactor(d, mode, modulus);
            double const old = *f;
            if (!factorValue(pair.second, *f) || !d.valid()) {
                *f = old;
                badFactor(mode, modulus, pair.second);
            }
        }
    }
    return d;
}

py::dict lpf(Laminate const& self, Loads loads, std::string const& criterionWord, py::handle dT, py::handle dM,
             py::handle degradation, py::handle fos)
{
    namespace an = laminate::analysis;
    int const criterion = catalogueCriterion(criterionWord);
    bool const withMargin = !fos.is_none();
    py::object const fosValue = withMargin ? py::reinterpret_borrow<py::object>(fos) : py::float_(1.0);
    // The options in laminate::lpf's order: the numbers, the degradation,
    // then what the laminate must have for dT and dM, then the loads.
    conditionValue(dT, "dT"), conditionValue(dM, "dM"), conditionValue(fosValue, "fos");
    an::Degradation const rule = degradationOption(degradation);
    pylaminate::BatchOptions const opt = conditions(*self.p, {}, dT, dM, fosValue);
    double l[8];
    oneCase(loads, l);
    std::shared_ptr<PreparedLaminate const> keep = self.p;
    an::LpfResult r;
    {
        py::gil_scoped_release release;
        an::LastPlyFailure run(keep->analysis(), keep->rating(), keep->alpha(), keep->beta(), rule);
        run.run(criterion, an::RatingLoad{l, opt.dT, opt.dM}, r);
    }
    an::CriterionInfo const& info = *an::kCriteria[criterion];
    py::list events;
    for (an::LpfEvent const& e : r.events) {
        py::dict d;
        d["factor"] = e.factor;
        d["ply"] = e.ply;
        d["face"] = e.face == an::Face::Bottom ? "bottom" : "top";
        d["mode"] = e.mode >= 0 ? info.modes[e.mode] : "none";
        d["strains"] = vector(e.strains, 8);
        if (withMargin) d["mos"] = an::marginOfSafety(e.factor, opt.fos);
        events.append(d);
    }
    // A ply that cannot be rated: no factor, as fpf gives it (0), and its
    // verdict word as the end.
    static char const* const endWords[] = {"unloaded", "broken", "singular", "carried"};
    bool const unrated = r.end == an::LpfResult::End::Unrated;
    double const last = unrated ? 0.0 : r.last;
    py::dict d;
    d["criterion"] = info.name;
    d["events"] = events;
    d["last"] = last;
    d["end"] = unrated ? an::verdictWord(r.verdict) : endWords[static_cast<int>(r.end)];
    if (withMargin) d["mos"] = an::marginOfSafety(last, opt.fos);
    return d;
}

py::dict parseLibrary(std::string const& text, std::string const& where)
{
    laminate::analysis::MaterialLibrary library;
    if (!library.parse(text)) {
        laminate::analysis::MaterialLibrary::Refusal const& why = library.refusal();
        std::string const line = std::to_string(why.line);
        throw Error(ErrorKind::Library, where + ", line " + line + ": " + why.text,
                    {"LIBRARY", why.rule, line, why.key});
    }
    py::dict out;
    for (laminate::analysis::MaterialLibrary::Entry const& e : library.entries())
        out[py::str(e.name)] = std::make_shared<Material>(e.name, e.material);
    return out;
}

}  // namespace

#include "docstrings.h"

PYBIND11_MODULE(_laminate, m)
{
    m.doc() = "The binary part of the laminate package; import laminate instead.";
    pylaminate::registerErrors(m);

    py::class_<Material, std::shared_ptr<Material>>(m, "Material", doc::Material)
        .def(py::init([](py::object name, py::object props, py::kwargs kw) {
                 if (props.is_none() && py::isinstance<py::dict>(name)) std::swap(name, props);
                 std::vector<std::pair<std::string, std::string>> pairs;
                 if (!props.is_none()) {
                     if (!py::isinstance<py::dict>(props)) throw py::type_error("props must be a dict");
                     pairs = propertyPairs(props);
                 }
                 for (auto const& p : propertyPairs(kw)) pairs.push_back(p);
                 std::string const n = name.is_none() ? std::string() : py::str(name).cast<std::string>();
                 return std::make_shared<Material>(n, pairs);
             }),
             py::arg("name") = py::none(), py::arg("props") = py::none())
        .def_property_readonly("name", [](Material const& self) -> py::object {
            return self.name.empty() ? py::object(py::none()) : py::object(py::str(self.name));
        }, "str or None: the material's name.")
        .def("get", [](Material const& self, bool given) { return materialDict(self.material, given); },
             py::arg("given") = false, doc::MaterialGet)
        .def("__getitem__", [](Material const& self, std::string const& key) -> py::object {
            py::dict d = materialDict(self.material, false);
            if (!d.contains(key)) throw py::key_error(key);
            return d[py::str(key)];
        })
        .def("__repr__", [](Material const& self) {
            std::string s = "Material(" + (self.name.empty() ? std::string("None") : py::repr(py::str(self.name)).cast<std::string>());
            for (auto item : materialDict(self.material, true))
                s += ", " + py::str(item.first).cast<std::string>() + "=" + py::repr(item.second).cast<std::string>();
            return s + ")";
        });

    py::class_<Laminate>(m, "Laminate", doc::Laminate)
        .def_static("from_record", [](std::string const& text) { return Laminate{PreparedLaminate::fromRecord(text)}; },
                    py::arg("text"), doc::FromRecord)
        .def_static("from_layup", &fromLayup, py::arg("layup"), py::kw_only(), py::arg("material") = py::none(),
                    py::arg("thickness") = py::none(), doc::FromLayup)
        .def_static("from_plies", &fromPlies, py::arg("plies"), py::kw_only(), py::arg("thickness") = py::none(),
                    doc::FromPlies)
        .def_property_readonly("layers", [](Laminate const& s) { return s.p->analysis().layers(); },
                               "int: the number of layers.")
        .def_property_readonly("thickness", [](Laminate const& s) { return s.p->analysis().thickness(); },
                               "float: the total thickness.")
        .def_property_readonly("record", [](Laminate const& s) { return s.p->record(); },
                               "str: the record the laminate was read from.")
        .def_property_readonly("angles", [](Laminate const& s) {
            std::vector<double> a;
            for (int k = 1; k <= s.p->analysis().layers(); k++) a.push_back(s.p->analysis().angle(k));
            return vector(a.data(), static_cast<py::ssize_t>(a.size()));
        }, "ndarray of float: the ply angles in degrees, layer 1 (lowest z) first.")
        .def("abd", &abd, doc::Abd)
        .def("evaluate", &evaluate, py::arg("loads"), doc::Evaluate)
        .def("rate", &rate, py::arg("loads"), py::kw_only(), py::arg("criteria") = py::none(),
             py::arg("dT") = 0.0, py::arg("dM") = 0.0, py::arg("fos") = 1.0, doc::Rate)
        .def("fpf", &fpf, py::arg("loads"), py::kw_only(), py::arg("criterion") = "tsaiwu", py::arg("dT") = 0.0,
             py::arg("dM") = 0.0, py::arg("fos") = 1.0, py::arg("threads") = 1, doc::Fpf)
        .def("lpf", &lpf, py::arg("loads"), py::kw_only(), py::arg("criterion") = "tsaiwu2d", py::arg("dT") = 0.0,
             py::arg("dM") = 0.0, py::arg("degradation") = py::none(), py::arg("fos") = py::none(), doc::Lpf)
        .def("envelope", &envelope, py::kw_only(), py::arg("plane") = std::make_pair(1, 2),
             py::arg("criterion") = "tsaiwu", py::arg("points") = 72, py::arg("dT") = 0.0, py::arg("dM") = 0.0,
             py::arg("fos") = 1.0, doc::Envelope)
        .def("__repr__", [](Laminate const& s) {
            return "<laminate.Laminate of " + std::to_string(s.p->analysis().layers()) + " layers" +
                   (s.p->notation().empty() ? std::string() : " " + s.p->notation()) + ">";
        });

    m.def("_parse_library", &parseLibrary, py::arg("text"), py::arg("where"));
    m.attr("FPF_DTYPE") = failureDtype(false);
    m.attr("ENVELOPE_DTYPE") = failureDtype(true);
    auto words = [](char const* const* w) {
        py::list l;
        for (; *w != nullptr; w++) l.append(*w);
        return py::tuple(l);
    };
    m.attr("CRITERIA") = words(pylaminate::kCriterionNames);
    m.attr("FACES") = words(pylaminate::kFaceWords);
    m.attr("OUTCOMES") = words(pylaminate::kOutcomeWords);
    m.attr("VERDICTS") = words(pylaminate::kVerdictWords);
    m.def("modes", [](std::string const& criterion) {
        std::vector<std::string> const w = pylaminate::modeWords(pylaminate::criterionChoice(criterion).id);
        return py::tuple(py::cast(w));
    }, py::arg("criterion"), doc::Modes);
}
