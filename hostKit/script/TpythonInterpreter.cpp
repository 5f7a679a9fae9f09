#include "script/TpythonInterpreter.h"

#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TfailedException.h"
#include "commandEngine/TiceBaseCmd.h"
#include "commandEngine/commandFlags.h"
#include "commandEngine/pythonCommands.h"

// Python has a member of the name of a macro of Qt's.
#undef slots
#include <pybind11/embed.h>
#include <pybind11/stl.h>

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace py = pybind11;

namespace {

// None of these is ever deleted: Python stays as long as the process, and longer than static objects.
struct Tstate
{
    TpythonInterpreter::Toutput output;
    py::module_ module;
    py::dict globals;
    py::object error;
    std::vector<Tstring> functions;
};
Tstate* gState = nullptr;

/** A script can start threads. */
bool isUiThread()
{
    const QCoreApplication* application = QCoreApplication::instance();
    return !application || application->thread() == QThread::currentThread();
}

py::object toPython(const TcommandResult& result)
{
    struct Tvisitor
    {
        py::object operator()(std::monostate) const { return py::none(); }
        py::object operator()(bool value) const { return py::bool_(value); }
        py::object operator()(int value) const { return py::int_(value); }
        py::object operator()(double value) const { return py::float_(value); }
        py::object operator()(const Tstring& value) const
        {
            // Names of files need not be text.
            return py::reinterpret_steal<py::object>(
                PyUnicode_DecodeUTF8(value.asChar(), value.length(), "surrogateescape"));
        }
        py::object operator()(const std::vector<int>& value) const { return py::cast(value); }
    };
    return std::visit(Tvisitor(), result);
}

Tstring textOf(const py::handle& text)
{
    const auto bytes =
        py::reinterpret_steal<py::bytes>(PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
    if (!bytes)
        throw py::error_already_set();
    return Tstring(std::string(bytes));
}

/** What ended a script, in the way Python shows it. */
Tstring traceOf(py::error_already_set& exception)
{
    try {
        const py::object trace = exception.trace() ? exception.trace() : py::object(py::none());
        const py::object lines =
            py::module_::import("traceback").attr("format_exception")(exception.type(), exception.value(), trace);
        return textOf(py::str("").attr("join")(lines));
    } catch (const std::exception&) {
        return exception.what();
    }
}

TpythonInterpreter::Toutcome outcomeOf(py::error_already_set& exception)
{
    if (!exception.matches(PyExc_SystemExit))
        return {false, {}, traceOf(exception)};
    // What the script ends with can be an object of its own, with text that can't be had.
    try {
        const py::object code = exception.value().attr("code");
        if (code.is_none() || (py::isinstance<py::int_>(code) && code.equal(py::int_(0))))
            return {true, {}, {}};
        return {false, {}, Tstring("The script has ended with: ") + textOf(py::str(code))};
    } catch (py::error_already_set& e) {
        return {false, {}, traceOf(e)};
    }
}

class TpythonScript : public Tscript
{
public:
    explicit TpythonScript(py::object code) : fCode(std::move(code)) {}
    // NOLINTNEXTLINE(bugprone-exception-escape): an interpreter that gives no lock leaves nothing to go on with
    ~TpythonScript() override
    {
        const py::gil_scoped_acquire lock;
        fCode = py::object();
    }

    Tstring text() const override
    {
        const py::gil_scoped_acquire lock;
        try {
            return textOf(py::isinstance<py::str>(fCode) ? fCode : py::repr(fCode));
        } catch (py::error_already_set&) {
            return Tstring();
        }
    }

    bool run() override
    {
        TpythonInterpreter::Toutcome outcome{true, {}, {}};
        {
            const py::gil_scoped_acquire lock;
            try {
                if (py::isinstance<py::str>(fCode))
                    outcome = TpythonInterpreter::instance()->execute(textOf(fCode), "<command>");
                else
                    fCode();
            } catch (py::error_already_set& e) {
                outcome = outcomeOf(e);
            }
        }
        if (!outcome.ok)
            TcommandEngine::displayError(outcome.error);
        return outcome.ok;
    }

private:
    py::object fCode;
};

[[noreturn]] void raise(const Tstring& message)
{
    PyErr_SetObject(gState->error.ptr(), toPython(message).ptr());
    throw py::error_already_set();
}

TcommandValue toValue(const py::handle& value, Tsyntax::TargumentType type, const Tstring& flag)
{
    if (type == Tsyntax::kScript) {
        if (py::isinstance<py::str>(value) || PyCallable_Check(value.ptr()))
            return TscriptPtr(std::make_shared<TpythonScript>(py::reinterpret_borrow<py::object>(value)));
    } else if (py::isinstance<py::bool_>(value)) {
        return value.ptr() == Py_True;
    } else if (py::isinstance<py::int_>(value)) {
        int overflow = 0;
        const long long whole = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
        if (overflow)
            throw TfailedException(Tstring::tFormat("The value of '^1s' is out of range.", flag));
        return whole;
    } else if (py::isinstance<py::float_>(value)) {
        return value.cast<double>();
    } else if (py::isinstance<py::str>(value)) {
        return textOf(value);
    }
    throw TfailedException(
        Tstring::tFormat("A value of type ^1s can't be an argument of '^2s'.", Py_TYPE(value.ptr())->tp_name, flag));
}

void addUse(TcommandTokens& tokens, const Tsyntax::Tflag& flag, const py::handle& value)
{
    tokens.push_back({true, flag.longName});
    const bool isList = py::isinstance<py::tuple>(value) || py::isinstance<py::list>(value);
    const py::tuple values = isList ? py::tuple(py::reinterpret_borrow<py::object>(value)) : py::make_tuple(value);
    if (values.size() > flag.types.size())
        throw TfailedException(Tstring::tFormat("Flag '^1s' has ^2d argument(s).", flag.longName, flag.types.size()));
    for (std::size_t i = 0; i < values.size(); ++i)
        tokens.push_back({false, toValue(values[i], flag.types[i], flag.longName)});
}

TcommandTokens toTokens(const Tsyntax& syntax, const py::args& args, const py::kwargs& kwargs)
{
    std::vector<std::pair<const Tsyntax::Tflag*, py::handle>> given;
    bool isQuery = false;
    for (const auto& each : kwargs) {
        const Tstring name = textOf(each.first);
        const Tsyntax::Tflag* flag = syntax.find(name);
        if (!flag)
            throw TfailedException(Tstring::tFormat("Unknown flag '^1s'.", name));
        given.emplace_back(flag, each.second);
        isQuery |= flag->shortName == kELFqueryFlag && each.second.ptr() == Py_True;
    }
    TcommandTokens tokens;
    for (const auto& arg : args)
        tokens.push_back({false, toValue(arg, Tsyntax::kString, "an object")});
    for (const auto& [flag, value] : given) {
        if (isQuery || flag->types.empty()) {
            if (!py::isinstance<py::bool_>(value))
                throw TfailedException(Tstring::tFormat("Flag '^1s' must be True or False here.", flag->longName));
            if (value.ptr() == Py_True)
                tokens.push_back({true, flag->longName});
        } else if (flag->multiUse && py::isinstance<py::list>(value)) {
            for (const auto& use : value)
                addUse(tokens, *flag, use);
        } else {
            addUse(tokens, *flag, value);
        }
    }
    return tokens;
}

py::object call(const Tstring& name, const py::args& args, const py::kwargs& kwargs)
{
    if (!isUiThread())
        raise(name + ": Commands run in the thread of the user interface only.");
    const auto& open = pythonLirnCommands();
    const auto found =
        std::find_if(open.begin(), open.end(), [&](const TiceBaseCmd* each) { return each->name() == name; });
    const Tsyntax* syntax = found == open.end() ? nullptr : (*found)->syntax();
    if (!syntax)
        raise(Tstring::tFormat("There is no command '^1s'.", name));
    TiceBaseCmd& command = **found;
    TcommandTokens tokens;
    try {
        tokens = toTokens(*syntax, args, kwargs);
    } catch (const TfailedException& e) {
        raise(name + ": " + e.what());
    }
    const auto dispatch = command.scriptDispatch();
    const TcommandOutcome outcome = (dispatch ? dispatch : pythonDispatchLirnCommand)(command, tokens);
    if (!outcome.ok)
        raise(outcome.error);
    return toPython(outcome.result);
}

/** Makes the module's functions those of the commands there are now. */
void updateModule()
{
    const auto& open = pythonLirnCommands();
    auto& functions = gState->functions;
    for (std::size_t i = functions.size(); i-- > 0;) {
        if (std::any_of(open.begin(), open.end(), [&](const auto* each) { return each->name() == functions[i]; }))
            continue;
        if (py::hasattr(gState->module, functions[i].asChar()))
            py::delattr(gState->module, functions[i].asChar());
        functions.erase(functions.begin() + static_cast<std::ptrdiff_t>(i));
    }
    for (const TiceBaseCmd* command : open) {
        const Tstring name = command->name();
        if (std::find(functions.begin(), functions.end(), name) != functions.end())
            continue;
        gState->module.attr(name.asChar()) = py::cpp_function(
            [name](const py::args& args, const py::kwargs& kwargs) { return call(name, args, kwargs); },
            py::name(name.asChar()));
        functions.push_back(name);
    }
}

void put(const Tstring& bytes, bool isError)
{
    if (gState->output) {
        gState->output(bytes, isError);
        return;
    }
    std::FILE* stream = isError ? stderr : stdout;
    std::fwrite(bytes.asChar(), 1, bytes.length(), stream);
    std::fflush(stream);
}

void write(const py::str& text, bool isError)
{
    const Tstring bytes = textOf(text);
    if (isUiThread())
        put(bytes, isError);
    else
        QMetaObject::invokeMethod(QCoreApplication::instance(), [bytes, isError] { put(bytes, isError); });
}

py::object makeStream(bool isError)
{
    py::object stream = py::module_::import("types").attr("SimpleNamespace")();
    stream.attr("write") = py::cpp_function([isError](const py::str& text) {
        write(text, isError);
        return py::len(text);
    });
    stream.attr("flush") = py::cpp_function([] {});
    stream.attr("isatty") = py::cpp_function([] { return false; });
    stream.attr("encoding") = "utf-8";
    return stream;
}

/** Null, or why Python can't be started. */
const char* start()
{
    PyPreConfig early;
    PyPreConfig_InitIsolatedConfig(&early);
    early.utf8_mode = 1;
#ifdef __SANITIZE_ADDRESS__
    early.allocator = PYMEM_ALLOCATOR_MALLOC; // or the leak sanitizer can't follow what Python holds
#endif
    PyStatus status = Py_PreInitialize(&early);
    if (PyStatus_Exception(status))
        return status.err_msg;
    PyConfig config;
    PyConfig_InitIsolatedConfig(&config);
    status = PyConfig_SetString(&config, &config.program_name, PYTHON_PROGRAM);
    if (!PyStatus_Exception(status))
        status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    return PyStatus_Exception(status) ? status.err_msg : nullptr;
}

} // namespace

TpythonInterpreter* TpythonInterpreter::instance()
{
    static TpythonInterpreter* const interpreter = []() -> TpythonInterpreter* {
        if (const char* why = start()) {
            TcommandEngine::displayError(Tstring("Python can't be started: ") + why);
            return nullptr;
        }
        try {
            gState = new Tstate;
            gState->module = py::reinterpret_borrow<py::module_>(PyImport_AddModule("lirn"));
            gState->globals = py::module_::import("__main__").attr("__dict__");
            gState->globals["lirn"] = gState->module;
            gState->error =
                py::reinterpret_steal<py::object>(PyErr_NewException("lirn.error", PyExc_RuntimeError, nullptr));
            gState->module.attr("error") = gState->error;
            auto sys = py::module_::import("sys");
            sys.attr("stdin") = py::none(); // a script that waits for a terminal would stop the program
            sys.attr("stdout") = makeStream(false);
            sys.attr("stderr") = makeStream(true);
            updateModule();
        } catch (py::error_already_set& e) {
            TcommandEngine::displayError(Tstring("Python can't be started: ") + e.what());
            return nullptr;
        }
        PyEval_SaveThread(); // threads of scripts run while the program waits for events
        return new TpythonInterpreter;
    }();
    return interpreter;
}

TpythonInterpreter::Toutcome TpythonInterpreter::execute(const Tstring& script, const char* name)
{
    const py::gil_scoped_acquire lock;
    try {
        updateModule();
        const py::object compile = py::module_::import("builtins").attr("compile");
        const py::object source = toPython(script);
        const py::str file(name ? name : "<script>");
        py::object code;
        bool isExpression = true;
        try {
            code = compile(source, file, "eval");
        } catch (py::error_already_set& e) {
            if (!e.matches(PyExc_SyntaxError))
                throw;
            isExpression = false;
        }
        if (!isExpression)
            code = compile(source, file, "exec");
        const auto value = py::reinterpret_steal<py::object>(
            PyEval_EvalCode(code.ptr(), gState->globals.ptr(), gState->globals.ptr()));
        if (!value)
            throw py::error_already_set();
        return {true, value.is_none() ? Tstring() : textOf(py::repr(value)), {}};
    } catch (py::error_already_set& e) {
        return outcomeOf(e);
    } catch (const std::exception& e) {
        return {false, {}, e.what()};
    }
}

TpythonInterpreter::Toutcome TpythonInterpreter::executeFile(const char* path)
{
    QFile file(QFile::decodeName(path));
    if (!file.open(QFile::ReadOnly))
        return {false, {}, Tstring::tFormat("Can't read the script '^1s'.", path)};
    QByteArray script = file.readAll();
    if (script.startsWith("\xef\xbb\xbf"))
        script.remove(0, 3); // the mark that some editors begin a text with
    return execute(Tstring(script.toStdString()), path);
}

void TpythonInterpreter::setOutput(Toutput output)
{
    const py::gil_scoped_acquire lock;
    gState->output = std::move(output);
}
