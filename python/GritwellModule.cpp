// The Python module `gritwell`: the public C++ interface with numpy arrays.
// Points are read in place when they already are a C-contiguous float32
// array of shape (n, 3), and evaluated with the interpreter's lock released,
// so Python threads holding different textures evaluate at once.

#include <Python.h>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <gritwell/gritwell.h>

#include <charconv>
#include <limits>
#include <string>

namespace py = pybind11;
using gritwell::Errc;
using gritwell::Status;
using gritwell::Texture;
using gritwell::Value;
using gritwell::ValueType;

namespace {

// A wrong type is Python's TypeError; every other refusal a ValueError.
void check(const Status& status) {
    if (status.ok()) return;
    if (status.code == Errc::wrongType) throw py::type_error(status.message);
    throw py::value_error(status.message);
}

std::string typeNameOf(py::handle obj) { return py::str(py::type::handle_of(obj).attr("__name__")); }

bool isNumpyInstance(py::handle obj, const char* type) {
    return py::isinstance(obj, py::module_::import("numpy").attr(type));
}

// A Python value as the field's own type. Integers stand for floats, as
// Python's arithmetic lets them; nothing else is converted, and bool, which
// Python counts as an integer, is only ever a bool.
Value toValue(const Texture& texture, const std::string& field, py::handle obj) {
    ValueType type{};
    bool found = false;
    for (const gritwell::FieldDesc& f : texture.generator().fields)
        if (f.name == field) {
            type = f.type;
            found = true;
        }
    if (!found) {
        Value unused;
        check(texture.get(field, unused));  // says which fields there are
    }
    const bool isBool = PyBool_Check(obj.ptr()) || isNumpyInstance(obj, "bool_");
    const bool isInteger = !isBool && PyIndex_Check(obj.ptr());
    const bool isFloat = PyFloat_Check(obj.ptr()) || isNumpyInstance(obj, "floating");
    auto wrongType = [&] {
        return py::type_error(texture.name() + "." + field + " is " +
                              std::string(gritwell::valueTypeName(type)) + ", not " + typeNameOf(obj));
    };
    switch (type) {
        case ValueType::Bool:
            if (!isBool) throw wrongType();
            return Value{obj.cast<bool>()};
        case ValueType::Int32: {
            if (!isInteger) throw wrongType();
            const py::int_ asInt = py::reinterpret_steal<py::int_>(PyNumber_Index(obj.ptr()));
            int overflow = 0;
            const long long v = PyLong_AsLongLongAndOverflow(asInt.ptr(), &overflow);
            if (overflow != 0 || v < std::numeric_limits<std::int32_t>::min() ||
                v > std::numeric_limits<std::int32_t>::max())
                throw py::value_error(texture.name() + "." + field + " is int32; " +
                                      std::string(py::str(obj)) + " is out of its range");
            return Value{static_cast<std::int32_t>(v)};
        }
        case ValueType::Float:
            if (!isFloat && !isInteger) throw wrongType();
            return Value{static_cast<float>(obj.cast<double>())};
    }
    throw wrongType();
}

py::object toPython(const Value& value) {
    return std::visit([](auto v) -> py::object { return py::cast(v); }, value);
}

void setFields(Texture& texture, const py::kwargs& fields) {
    for (const auto& [key, obj] : fields) {
        const std::string field = py::str(key);
        check(texture.set(field, toValue(texture, field, obj)));
    }
}

// Points as a float32 array of shape (n, 3) that can be read in place.
// Arrays must already be one; anything else (lists, tuples) is converted.
py::array pointArray(const py::object& points) {
    py::array array;
    if (py::isinstance<py::array>(points)) {
        array = py::reinterpret_borrow<py::array>(points);
        if (!array.dtype().equal(py::dtype::of<float>()))
            throw py::type_error("points must be float32, not " + std::string(py::str(array.dtype())) +
                                 "; convert with points.astype(numpy.float32)");
    } else {
        try {
            array = py::array_t<float, py::array::c_style | py::array::forcecast>(points);
        } catch (const py::error_already_set& e) {
            throw py::type_error(std::string("points must be an (n, 3) array of numbers: ") + e.what());
        }
    }
    if (array.ndim() != 2 || array.shape(1) != 3) {
        std::string shape = "(";
        for (py::ssize_t d = 0; d < array.ndim(); ++d) shape += (d ? ", " : "") + std::to_string(array.shape(d));
        throw py::value_error("points must have shape (n, 3), not " + shape + (array.ndim() == 1 ? ",)" : ")"));
    }
    constexpr int kAligned = py::detail::npy_api::NPY_ARRAY_ALIGNED_;
    if (!(array.flags() & py::array::c_style) || !(array.flags() & kAligned))
        throw py::value_error("points must be C-contiguous and aligned; pass numpy.ascontiguousarray(points)");
    return array;
}

py::array_t<float> evaluate(const Texture& texture, const py::object& points) {
    const py::array array = pointArray(points);
    const auto n = static_cast<std::size_t>(array.shape(0));
    py::array_t<float> out(static_cast<py::ssize_t>(n));
    const auto* xyz = static_cast<const float*>(array.data());
    float* values = out.mutable_data();
    Status status;
    {
        py::gil_scoped_release release;
        status = texture.evaluate(xyz, n, values);
    }
    check(status);
    return out;
}

Texture fromRecord(const py::buffer& bytes) {
    const py::buffer_info info = bytes.request();
    if (info.ndim != 1 || info.strides[0] != info.itemsize)
        throw py::value_error("a record must be contiguous bytes");
    Status status;
    Texture texture = Texture::fromRecord(info.ptr, static_cast<std::size_t>(info.size * info.itemsize), &status);
    check(status);
    return texture;
}

py::dict fieldDict(const Texture& texture) {
    py::dict fields;
    for (const gritwell::FieldDesc& f : texture.generator().fields) {
        Value value;
        check(texture.get(f.name, value));
        fields[py::str(f.name)] = toPython(value);
    }
    return fields;
}

// Texture('Brick', brickWidth=0.5, ...): floats in the fewest digits that
// give back their float32 bits, not those of the double Python holds.
std::string repr(const Texture& texture) {
    std::string text = "gritwell.Texture(" + std::string(py::repr(py::str(texture.name())));
    for (const gritwell::FieldDesc& f : texture.generator().fields) {
        Value value;
        check(texture.get(f.name, value));
        std::string shown;
        if (const float* v = std::get_if<float>(&value)) {
            char digits[32];
            shown.assign(digits, std::to_chars(digits, digits + sizeof digits, *v).ptr);
        } else {
            shown = py::repr(toPython(value));
        }
        text += ", " + f.name + "=" + shown;
    }
    return text + ")";
}

py::array_t<float> render(const Texture& texture, int size, float z, float extent) {
    // Checked before the array is made: a mistyped size must not ask for gigabytes.
    if (size < 1 || size > Texture::kLargestSlice)
        throw py::value_error("size must be 1 to " + std::to_string(Texture::kLargestSlice) + ", not " +
                              std::to_string(size));
    py::array_t<float> out({static_cast<py::ssize_t>(size), static_cast<py::ssize_t>(size)});
    float* values = out.mutable_data();
    Status status;
    {
        py::gil_scoped_release release;
        status = texture.renderSlice(size, z, extent, values);
    }
    check(status);
    return out;
}

}  // namespace

PYBIND11_MODULE(gritwell, m) {
    m.doc() = "Gritwell's procedural texture generators, evaluated on numpy arrays.";
    m.attr("__version__") = GRITWELL_VERSION;

    m.def(
        "generators",
        [] {
            py::list names;
            for (const gritwell::GeneratorDesc& g : gritwell::generators()) names.append(g.name);
            return names;
        },
        "The names of the generators, in the host's order.");

    py::class_<Texture>(m, "Texture", "One generator and its state record.")
        .def(py::init([](const std::string& name, const py::kwargs& fields) {
                 Status status;
                 Texture texture = Texture::fromName(name, &status);
                 check(status);
                 setFields(texture, fields);
                 return texture;
             }),
             py::arg("name"),
             "Texture(name, **fields): the generator at its defaults, with the given fields set.")
        .def_static("from_record", &fromRecord, py::arg("record"),
                    "The generator a state record names, adopting the record as the host does.")
        .def("__call__", &evaluate, py::arg("points"),
             "Values at points: a float32 array of shape (n, 3) (or anything numpy makes one of); "
             "returns float32 of shape (n,).")
        .def(
            "set", [](Texture& t, const py::kwargs& fields) { setFields(t, fields); },
            "set(**fields): sets fields by name, each of its own type.")
        .def_property_readonly("name", &Texture::name)
        .def_property_readonly("record", [](const Texture& t) {
            const std::vector<unsigned char> record = t.record();
            return py::bytes(reinterpret_cast<const char*>(record.data()), record.size());
        })
        .def_property_readonly("fields", &fieldDict, "The fields as a new dict, name to value.")
        .def_property("flags", &Texture::flags, &Texture::setFlags,
                      "The host's flags word (default 2); 4 or 8 evaluate in the x/y plane.")
        .def("__copy__", [](const Texture& t) { return Texture(t); })
        .def("__deepcopy__", [](const Texture& t, const py::dict&) { return Texture(t); })
        .def("__repr__", &repr);

    m.def("render", &render, py::arg("texture"), py::arg("size") = 256, py::arg("z") = 0.3f,
          py::arg("extent") = 4.0f,
          "The slice z = const of [0, extent]^2 as a (size, size) float32 array, top row first, "
          "sampled at pixel centres as `gritwell render` draws it.");
}
