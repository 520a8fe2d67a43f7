#include "errors.h"

#include <Python.h>

namespace py = pybind11;

namespace pylaminate {

namespace {

// The classes, made once when the module is imported and alive as long as
// the module: the interpreter holds them through the module's attributes.
PyObject* classes[6] = {};

char const* const classNames[6] = {"LaminateError", "RecordError", "MaterialError",
                                   "LayupError", "LoadsError", "LibraryError"};
char const* const classDocs[6] = {
    "Base of every error of laminate (a ValueError).\n\n"
    "Attributes\n----------\ncode : tuple of str\n"
    "    The error code, the words the Tcl commands give in -errorcode, 'LAMINATE' first.",
    "A record refused by the strict reader: code ('LAMINATE', 'RECORD', rule, layer, field).",
    "A ply material refused: code ('LAMINATE', 'MATERIAL', rule, key).",
    "A layup refused: code ('LAMINATE', 'LAYUP', rule, ...).",
    "Loads that are not (n, 8) finite numbers: code ('LAMINATE', 'LOADS', rule).",
    "A material library refused: code ('LAMINATE', 'LIBRARY', rule, line, key)."};

}  // namespace

Error::Error(ErrorKind kind, std::string const& message, std::initializer_list<std::string> code)
    : std::runtime_error(message), kind_(kind), code_{"LAMINATE"}
{
    code_.insert(code_.end(), code.begin(), code.end());
}

std::string shown(std::string const& s)
{
    if (s.size() <= 40) return s;
    size_t cut = 40;
    while (cut > 0 && (static_cast<unsigned char>(s[cut]) & 0xC0) == 0x80) --cut;
    return s.substr(0, cut) + "...";
}

void registerErrors(py::module_& m)
{
    for (int i = 0; i < 6; i++) {
        std::string const qualified = std::string("laminate.") + classNames[i];
        PyObject* base = i == 0 ? PyExc_ValueError : classes[0];
        classes[i] = PyErr_NewExceptionWithDoc(qualified.c_str(), classDocs[i], base, nullptr);
        if (classes[i] == nullptr) throw py::error_already_set();
        m.add_object(classNames[i], py::handle(classes[i]));
    }
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (Error const& e) {
            py::handle cls(classes[static_cast<int>(e.kind())]);
            py::object instance = cls(py::str(e.what()));
            py::tuple code(e.code().size());
            for (size_t i = 0; i < e.code().size(); i++) code[i] = py::str(e.code()[i]);
            instance.attr("code") = code;
            PyErr_SetObject(cls.ptr(), instance.ptr());
        }
    });
}

}  // namespace pylaminate
