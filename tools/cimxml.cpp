// cimxml: reads CIM-XML documents and reports what each held; optionally
// prints it as MOF, as one CIM-XML document or as one JSON document, and
// lists its operations.
//
// Standard output carries only results (one summary line per file, the MOF,
// the operations, or one JSON document), so scripts can read it; everything
// else goes to standard error. With --xml it carries the CIM-XML document
// alone, and the lines that would have gone there go to standard error.
#include "cimxml/CIMXMLDocument.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/CIMReference.h"
#include "core_api/CIMValue.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"
#include "core_api/OSSpecific.h"
#include "populate/NamespacePopulator.h"
#include "write/CIMXMLWriter.h"
#include "write/JsonWriter.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

using namespace NVRNORV20;

namespace {

const int kExitOK = 0;
const int kExitFailed = 1;
const int kExitUsage = 2;

const char kDescription[] =
    "Reads each CIM-XML FILE, plain or gzip-compressed (a name containing \".gz\"),\n"
    "in order. By default it reads the full grammar: every element of DSP0201,\n"
    "messages and operations among them. The --schema documents are loaded first\n"
    "into a namespace that types what the files hold; the files never change it.\n"
    "Each file prints on standard output:\n"
    "  FILE: Q qualifier declarations, C classes, I instances, P paths, O operations\n"
    "With --classic it reads the classic grammar instead (declarations and the\n"
    "CreateClass and CreateInstance requests), loads every file into one\n"
    "namespace, and prints:\n"
    "  FILE: N classes, M instances\n"
    "With --json it prints instead one JSON document of everything it read.\n"
    "A file that fails prints instead, on standard error:\n"
    "  FILE: failed: status S (TEXT)\n"
    "and the next file is read. With --xml standard output carries one CIM-XML\n"
    "document of what was read, and those lines go to standard error. Without FILE\n"
    "the bundled example schema is read.\n";

const char kFooter[] = "Exit status: 0 when every file was read, 1 when any failed, 2 for a usage\n"
                       "error.";

/// Every message of the loader and the object model as one "[LEVEL] TEXT"
/// line on standard error, or nothing at all.
class TToolLogger : public ILogger {
public:
  explicit TToolLogger(bool silent) : quiet(silent) {}

  void Log(int level, const std::string &text) override {
    if (quiet)
      return;
    const std::string line = "[" + std::to_string(level) + "] " + text + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
  }

private:
  bool quiet;
};

/// Installs the logger as the core logger for the scope's lifetime, so that
/// the library never logs into a logger that is gone.
class TLoggerScope {
public:
  explicit TLoggerScope(ILogger *logger) { TRootObject::SetCoreLogger(logger); }
  ~TLoggerScope() { TRootObject::SetCoreLogger(nullptr); }
  TLoggerScope(const TLoggerScope &) = delete;
  TLoggerScope &operator=(const TLoggerScope &) = delete;
};

struct TOptions {
  bool classic = false;
  bool instances = false;
  bool json = false;
  bool mof = false;
  bool operations = false;
  bool quiet = false;
  bool stats = false;
  bool xml = false;
  std::vector<std::string> schemas;
  std::vector<std::string> files;
};

/// CLI11's help with the description after the usage line, and an option's
/// argument without its needs and excludes, which the group headings say.
class THelpFormatter : public CLI::Formatter {
public:
  std::string make_description(const CLI::App * /*app*/) const override { return std::string(); }
  std::string make_usage(const CLI::App *app, std::string name) const override {
    return CLI::Formatter::make_usage(app, std::move(name)) + "\n" + app->get_description() + "\n";
  }
  std::string make_option_opts(const CLI::Option *option) const override {
    const std::string type = option->get_type_name();
    return option->get_type_size() == 0 || type.empty() ? std::string() : " " + type;
  }
};

/// Binds the command line's options to options. Unknown options are kept as
/// extras, so that the tool names the first of them itself.
void DescribeOptions(CLI::App &app, TOptions &options) {
  app.formatter(std::make_shared<THelpFormatter>());
  app.get_formatter()->column_width(18);
  app.footer(kFooter);
  app.allow_extras();
  app.set_help_flag("-h,--help", "print this text");
  CLI::Option *classic = app.add_flag("--classic", options.classic,
                                      "read the classic grammar, loading every file into one\n"
                                      "namespace, as the loaders always did");
  CLI::Option *mof = app.add_flag("--mof", options.mof,
                                  "print MOF on standard output. Full grammar: after each\n"
                                  "file's line, the objects it gave back in document order,\n"
                                  "a path as a \"// path: PATH\" line. With --classic: after\n"
                                  "all files, the namespace: qualifier declarations, classes\n"
                                  "(superclasses first), instances");
  CLI::Option *json = app.add_flag("--json", options.json,
                                   "print, instead of the summary lines, one JSON document:\n"
                                   "each file's name and, in the full grammar, the items it\n"
                                   "gave back, as they are read; with --classic, after all\n"
                                   "files, the namespace (docs/cimxml-tool.md gives the shape)");
  app.add_flag("--xml", options.xml,
               "print one CIM-XML document on standard output, after all\n"
               "files, and the files' lines on standard error. Full\n"
               "grammar: the qualifier declarations, classes (superclasses\n"
               "first) and instances that the files gave back. With\n"
               "--classic: the namespace. Not with --mof or --json")
      ->excludes(mof)
      ->excludes(json);
  app.add_flag("--quiet", options.quiet,
               "do not show the loader's messages, which otherwise go to\n"
               "standard error as \"[LEVEL] TEXT\" lines");
  app.add_flag("--stats", options.stats,
               "per file, print on standard error\n"
               "  FILE: B bytes, T ms, R MB/s\n"
               "(B the file's size as stored, T the time the load took,\n"
               "R = B / T in millions of bytes per second)");
  const std::string full = "Full grammar (the default)";
  app.add_option("--schema", options.schemas,
                 "load FILE first, in the classic grammar, into the namespace\n"
                 "that types what the files hold; repeatable")
      ->type_name("FILE")
      ->allow_extra_args(false)
      ->excludes(classic)
      ->group(full);
  CLI::Option *operations = app.add_flag("--operations", options.operations,
                                         "after each file's line (and MOF), print its operations,\n"
                                         "one a line:\n"
                                         "  KIND METHOD [TARGET] (NAME=VALUE, ...) [return VALUE]\n"
                                         "    [error CODE \"TEXT\"] [correlator NAME=VALUE]...\n"
                                         "with \"N objects\" for a value given as objects")
                                ->excludes(classic)
                                ->group(full);
  app.add_flag("--instances", options.instances,
               "read the files as instance documents (by default they are\n"
               "read as class documents)")
      ->needs(classic)
      ->group("Classic grammar (--classic)");
  app.add_option("FILE", options.files, "the documents, read in order")->type_name("");
  json->excludes(mof)->excludes(operations);
}

/// The first argument before "--" that CLI11 did not recognise, or that
/// looks like an option yet was taken as a file ("-5", "---"); "" for none.
/// Like getopt, an option's value may itself begin with '-'.
std::string FirstUnknown(const CLI::App &app, const TOptions &options, int argc, char **argv) {
  std::vector<std::string> extras = app.remaining();
  // CLI11 keeps the "--" that ends the options among them.
  extras.erase(std::remove(extras.begin(), extras.end(), "--"), extras.end());
  const auto among = [](const std::vector<std::string> &list, const std::string &argument) {
    return std::find(list.begin(), list.end(), argument) != list.end();
  };
  for (int i = 1; i < argc && std::string(argv[i]) != "--"; ++i) {
    std::string argument = argv[i];
    if (among(extras, argument) ||
        (argument.size() > 1 && argument[0] == '-' && among(options.files, argument)))
      return argument;
  }
  return extras.empty() ? std::string() : extras.front();
}

int UsageError(const CLI::App &app, const std::string &message) {
  std::fprintf(stderr, "cimxml: %s\n", message.c_str());
  std::fputs(app.help().c_str(), stderr);
  return kExitUsage;
}

bool FileExists(const std::string &path) {
  std::FILE *file = std::fopen(path.c_str(), "rb");
  if (file == nullptr)
    return false;
  std::fclose(file);
  return true;
}

#ifdef ORV_SOURCE_EXAMPLES_DIR
/// The build tree's binary loads the examples of its source tree.
std::string BundledExamplesDir() {
  return ORV_SOURCE_EXAMPLES_DIR;
}
#else
/// The installed binary finds its examples where the install put them
/// relative to the binary itself, so that a tree installed under any prefix,
/// or moved, still finds them. Empty when the binary's own path cannot be
/// read.
std::string BundledExamplesDir() {
  std::error_code error;
  const std::filesystem::path binary = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error)
    return std::string();
  return (binary.parent_path() / ORV_EXAMPLES_FROM_BINARY).lexically_normal().string();
}
#endif

void PrintStats(const std::string &fileName, double seconds) {
  std::uint64_t bytes = 0;
  try {
    bytes = TOSSpecific::GetFileSize(fileName);
  } catch (const TORVException &) {
    return; // a missing file has nothing to measure
  }
  const double milliseconds = seconds * 1000.0;
  const double megabytesPerSecond =
      seconds > 0.0 ? static_cast<double>(bytes) / 1e6 / seconds : 0.0;
  std::fprintf(stderr, "%s: %llu bytes, %.3f ms, %.1f MB/s\n", fileName.c_str(),
               static_cast<unsigned long long>(bytes), milliseconds, megabytesPerSecond);
}

void Print(const std::string &text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

/// A file's lines: on standard output, unless that carries the document.
void Report(const TOptions &options, const std::string &text) {
  if (!options.xml) {
    Print(text);
    return;
  }
  std::fwrite(text.data(), 1, text.size(), stderr);
}

/// Runs step, reporting its failure as the file's and handing it to failed;
/// false when it failed.
template <typename TStep, typename TFailed>
bool Attempt(const std::string &fileName, TStep step, TFailed failed) {
  try {
    step();
    return true;
  } catch (const TORVException &ex) {
    std::fprintf(stderr, "%s: failed: status %d (%s)\n", fileName.c_str(),
                 static_cast<int>(ex.GetStatusCode()), ex.what());
    failed(ex);
  } catch (const std::exception &ex) {
    // The library promises TORVException only; anything else is still one
    // file's failure, not the tool's.
    std::fprintf(stderr, "%s: failed: %s\n", fileName.c_str(), ex.what());
    failed(ex);
  }
  return false;
}

template <typename TStep> bool Attempt(const std::string &fileName, TStep step) {
  return Attempt(fileName, step, [](const std::exception &) {});
}

/// Loads the file, then prints what it held, then its statistics when asked
/// for; false when loading or printing failed. A failed load goes to failed.
/// Only the load is timed (with --json in the full grammar, that includes
/// writing the items, which go out as they are read).
template <typename TLoad, typename TPrint, typename TFailed>
bool ProcessFile(const std::string &fileName, const TOptions &options, TLoad load, TPrint print,
                 TFailed failed) {
  const auto start = std::chrono::steady_clock::now();
  bool done = Attempt(fileName, load, failed);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  done = done && Attempt(fileName, print);
  if (options.stats)
    PrintStats(fileName, elapsed.count());
  return done;
}

/// json, when given, gets the file's entry instead of its summary line.
bool LoadClassic(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
                 const TOptions &options, TJsonWriter *json) {
  std::size_t classes = 0;
  std::size_t instances = 0;
  return ProcessFile(
      fileName, options,
      [&] {
        if (options.instances)
          instances = TNamespacePopulator::PopulateFromRegXMLFile(ns, fileName).size();
        else
          classes = TNamespacePopulator::PopulateFromXMLFile(ns, fileName).size();
      },
      [&] {
        if (json != nullptr)
          json->ClassicFile(fileName, classes, instances);
        else
          Report(options, fileName + ": " + std::to_string(classes) + " classes, " +
                              std::to_string(instances) + " instances\n");
      },
      [&](const std::exception &failure) {
        if (json != nullptr)
          json->ClassicFile(fileName, 0, 0, &failure);
      });
}

/// The namespace of a namespace path, else the reference's text (with
/// "//host/" first when it names a host).
std::string PathText(const TCIMXMLPath &path) {
  if (path.kind == TCIMXMLPath::EKind::kNamespace)
    return path.reference.GetNamespaceName();
  return path.reference.ToString();
}

/// The object's MOF, a path's as a comment; "" for one MOF cannot write.
/// A class's qualifiers carry the flavors that differ from their
/// declarations', which the full grammar reads as the document states them.
std::string ObjectMOF(const TCIMXMLObject &object) {
  const TCIMOptions withFlavors{{"FLAVORS", TCIMValue(true)}};
  switch (object.kind) {
  case TCIMXMLObject::EKind::kQualifierDecl:
    return object.qualifierDecl ? object.qualifierDecl->ToMOF() : std::string();
  case TCIMXMLObject::EKind::kClass:
    return object.cimClass ? object.cimClass->ToMOF(withFlavors) : std::string();
  case TCIMXMLObject::EKind::kInstance: {
    if (!object.instance)
      return std::string();
    // MOF's instance needs one value at least; one without (a response to a
    // request with an empty property list, say) is a comment, so that the
    // output stays what compilers read.
    std::string mof = object.instance->ToMOF();
    const std::string empty = " {\n};";
    if (mof.size() > empty.size() &&
        mof.compare(mof.size() - empty.size(), empty.size(), empty) == 0)
      mof =
          "// " + mof.substr(0, mof.size() - empty.size()) + ": no values, which MOF cannot write";
    return mof;
  }
  case TCIMXMLObject::EKind::kClassPath:
  case TCIMXMLObject::EKind::kInstancePath:
    return "// path: " + PathText(object.path);
  }
  return std::string();
}

/// The name with ASCII letters in lower case: class names match in any case.
std::string Folded(std::string name) {
  for (char &c : name)
    if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  return name;
}

/// The names of the classes a class's MOF names besides its own: its
/// superclass, the classes its references and reference parameters point
/// to, and those of its EmbeddedInstance qualifiers.
std::vector<std::string> NamedClasses(ICIMClass &cls) {
  std::vector<std::string> names{cls.GetSuperClassName()};
  const auto embedded = [&names](ICIMQualifiedObject &element) {
    const TCIMValue value = element.GetQualifier("EmbeddedInstance")->GetValue();
    if (!value.IsNull() && value.GetType() == kCIMTypeString)
      names.push_back(value.GetString());
  };
  for (const auto &property : cls.GetLocalProperties()) {
    names.push_back(property->GetReferenceClassName());
    embedded(*property);
  }
  for (const auto &method : cls.GetLocalMethods()) {
    embedded(*method);
    for (const auto &parameter : method->GetParameters()) {
      names.push_back(parameter->GetReferenceClassName());
      embedded(*parameter);
    }
  }
  return names;
}

/// The objects in document order, except that a class comes after the
/// classes of the same result that it names: a MOF compiler reads a class
/// only when those are defined. Classes that name one another keep their
/// document order.
std::vector<const TCIMXMLObject *> DefinitionOrder(const TCIMXMLResult &result) {
  std::map<std::string, const TCIMXMLObject *> classes;
  for (const TCIMXMLObject &object : result.GetObjects())
    if (object.kind == TCIMXMLObject::EKind::kClass && object.cimClass)
      classes.emplace(Folded(object.cimClass->GetName()), &object);
  std::vector<const TCIMXMLObject *> order;
  std::set<const TCIMXMLObject *> placed;
  std::set<const TCIMXMLObject *> open;
  // Depth first over the classes named, with an explicit stack: a chain of
  // superclasses may be as long as the document allows.
  const auto place = [&](const TCIMXMLObject *first) {
    std::vector<std::pair<const TCIMXMLObject *, std::vector<std::string>>> stack;
    const auto enter = [&](const TCIMXMLObject *object) {
      open.insert(object);
      stack.emplace_back(object, object->cimClass ? NamedClasses(*object->cimClass)
                                                  : std::vector<std::string>());
    };
    enter(first);
    while (!stack.empty()) {
      std::vector<std::string> &names = stack.back().second;
      if (names.empty()) {
        order.push_back(stack.back().first);
        placed.insert(stack.back().first);
        stack.pop_back();
        continue;
      }
      const auto found = classes.find(Folded(names.back()));
      names.pop_back();
      if (found != classes.end() && placed.count(found->second) == 0 &&
          open.count(found->second) == 0)
        enter(found->second);
    }
  };
  for (const TCIMXMLObject &object : result.GetObjects())
    if (placed.count(&object) == 0)
      place(&object);
  return order;
}

/// Objects apart by blank lines, each ending its line, as a namespace's MOF
/// sets them.
std::string ObjectsMOF(const TCIMXMLResult &result) {
  std::string text;
  for (const TCIMXMLObject *object : DefinitionOrder(result)) {
    const std::string mof = ObjectMOF(*object);
    if (mof.empty())
      continue;
    text += (text.empty() ? "" : "\n") + mof + "\n";
  }
  return text;
}

const char *OperationKindName(TCIMXMLOperation::EKind kind) {
  switch (kind) {
  case TCIMXMLOperation::EKind::kIntrinsicCall:
    return "IMETHODCALL";
  case TCIMXMLOperation::EKind::kExtrinsicCall:
    return "METHODCALL";
  case TCIMXMLOperation::EKind::kExportCall:
    return "EXPMETHODCALL";
  case TCIMXMLOperation::EKind::kIntrinsicResponse:
    return "IMETHODRESPONSE";
  case TCIMXMLOperation::EKind::kExtrinsicResponse:
    return "METHODRESPONSE";
  case TCIMXMLOperation::EKind::kExportResponse:
    return "EXPMETHODRESPONSE";
  }
  return "?";
}

/// A value as a MOF literal; objects given in its place only as their
/// number, since --mof prints them.
std::string ArgumentText(const TCIMXMLArgument &argument) {
  if (argument.objectCount > 0)
    return std::to_string(argument.objectCount) + " objects";
  return argument.value.ToMOF();
}

/// KIND METHOD [TARGET] (NAME=VALUE, ...) [return VALUE] [error CODE "TEXT"]
/// [correlator NAME=VALUE]...
std::string OperationLine(const TCIMXMLOperation &operation) {
  std::string line = std::string(OperationKindName(operation.kind)) + " " + operation.method;
  if (operation.hasTarget)
    line += " " + PathText(operation.target);
  line += " (";
  for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
    const TCIMXMLArgument &parameter = operation.parameters[i];
    line += (i == 0 ? "" : ", ") + parameter.name + "=" + ArgumentText(parameter);
  }
  line += ")";
  if (operation.hasReturnValue)
    line += " return " + ArgumentText(operation.returnValue);
  if (operation.hasError) {
    line += " error " + std::to_string(operation.errorCode);
    if (!operation.errorDescription.empty())
      line += " " + TCIMValue(operation.errorDescription).ToMOF();
  }
  for (const TCIMXMLCorrelator &correlator : operation.correlators)
    line += " correlator " + correlator.name + "=" + correlator.value.ToMOF();
  return line + "\n";
}

/// The file's summary line, then, as asked for, its objects' MOF and its
/// operations.
std::string FullReport(const std::string &fileName, const TCIMXMLResult &result,
                       const TOptions &options) {
  using EKind = TCIMXMLObject::EKind;
  std::string text =
      fileName + ": " + std::to_string(result.Count(EKind::kQualifierDecl)) +
      " qualifier declarations, " + std::to_string(result.Count(EKind::kClass)) + " classes, " +
      std::to_string(result.Count(EKind::kInstance)) + " instances, " +
      std::to_string(result.Count(EKind::kClassPath) + result.Count(EKind::kInstancePath)) +
      " paths, " + std::to_string(result.GetOperations().size()) + " operations\n";
  if (options.mof)
    text += ObjectsMOF(result);
  if (options.operations)
    for (const TCIMXMLOperation &operation : result.GetOperations())
      text += OperationLine(operation);
  return text;
}

/// Adds the qualifier declarations, classes and instances of the result,
/// wherever they stood, to what --xml writes.
void Collect(const TCIMXMLResult &result, TCIMXMLDeclaration &collected) {
  for (const TCIMXMLObject &object : result.GetObjects()) {
    if (object.qualifierDecl)
      collected.qualifierDecls.push_back(object.qualifierDecl);
    if (object.cimClass)
      collected.classes.push_back(object.cimClass);
    if (object.instance)
      collected.instances.push_back(object.instance);
  }
}

/// Hands what a file gives back on to next, and declares in ns each
/// qualifier that the file declares and ns lacks: the files after it then
/// read their qualifiers with that declaration's type and flavors, as after
/// --schema, and MOF writes flavors against the declarations it prints.
class TDeclaring : public ICIMXMLHandler {
public:
  TDeclaring(ICIMNamespace &ns, ICIMXMLHandler &handler) : target(ns), next(handler) {}

  void Object(const TCIMXMLObject &object) override {
    if (object.qualifierDecl && !object.registered)
      Declare(*object.qualifierDecl);
    next.Object(object);
  }
  void Operation(const TCIMXMLOperation &operation) override { next.Operation(operation); }
  void Message(const TCIMXMLMessage &message) override { next.Message(message); }

private:
  void Declare(ICIMQualifierDecl &declaration) {
    try {
      target.GetQualifierDecl(declaration.GetName());
      return; // the first declaration of a name holds, as in a namespace
    } catch (const TORVException &) {
    }
    TCIMOptions sized;
    if (declaration.GetArraySize() != 0)
      sized.emplace("ARRAYSIZE",
                    TCIMValue::MakeUnsigned(kCIMTypeUint32, declaration.GetArraySize()));
    target
        .CreateQualifierDecl(declaration.GetName(), declaration.GetDefaultValue(),
                             declaration.GetScope(), declaration.GetFlavor(), sized)
        ->Commit();
  }

  ICIMNamespace &target;
  ICIMXMLHandler &next;
};

/// Reads one file in the full grammar into handler; ns only types what it
/// holds, and gains its qualifier declarations.
void PopulateFull(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
                  ICIMXMLHandler &handler) {
  TDeclaring declaring(*ns, handler);
  TNamespacePopulator::Populate(
      ns, fileName, {ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly}, declaring);
}

/// Reads one file in the full grammar. A file that failed adds nothing to
/// collected.
bool ReadFull(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
              const TOptions &options, TCIMXMLDeclaration &collected) {
  TCIMXMLResult result;
  return ProcessFile(
      fileName, options, [&] { PopulateFull(ns, fileName, result); },
      [&] {
        Report(options, FullReport(fileName, result, options));
        Collect(result, collected);
      },
      [](const std::exception &) {});
}

/// Reads one file in the full grammar, its items written as they arrive;
/// a file that fails keeps those written before, and says why.
bool ReadJson(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
              const TOptions &options, TJsonWriter &json) {
  json.BeginFile(fileName);
  return ProcessFile(
      fileName, options, [&] { PopulateFull(ns, fileName, json); }, [&] { json.EndFile(); },
      [&](const std::exception &failure) { json.EndFile(&failure); });
}

bool PrintMOF(const boost::shared_ptr<ICIMNamespace> &ns) {
  try {
    Print(ns->ToMOF());
    return true;
  } catch (const std::exception &ex) {
    std::fprintf(stderr, "cimxml: cannot print the namespace as MOF: %s\n", ex.what());
    return false;
  }
}

/// The namespace (classic) or what the files gave back (full) as one
/// document. std::cout writes through the C stream, so Finish sees its
/// errors.
bool PrintXML(const boost::shared_ptr<ICIMNamespace> &ns, const TCIMXMLDeclaration &collected,
              const TOptions &options) {
  try {
    if (options.classic)
      TCIMXMLWriter::WriteDocument(std::cout, *ns);
    else
      TCIMXMLWriter::WriteDocument(std::cout, collected);
    std::cout.flush();
    return true;
  } catch (const std::exception &ex) {
    std::fprintf(stderr, "cimxml: cannot print CIM-XML: %s\n", ex.what());
    return false;
  }
}

/// The exit status once standard output is flushed: a write that failed
/// (a full disk, a closed stream) fails the run, whatever loaded.
int Finish(int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0 && std::cout.good())
    return status;
  std::fprintf(stderr, "cimxml: cannot write standard output: %s\n", std::strerror(errno));
  return status == kExitUsage ? kExitUsage : kExitFailed;
}

/// Reads every file as options ask; false when any failed.
bool Run(const TOptions &options) {
  const boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/cimv2");
  TCIMXMLDeclaration collected;
  collected.namespaceName = ns->GetName();
  bool allRead = true;
  for (const std::string &schema : options.schemas)
    allRead =
        Attempt(schema, [&] { TNamespacePopulator::PopulateFromXMLFile(ns, schema); }) && allRead;
  std::unique_ptr<TJsonWriter> json;
  if (options.json)
    json = std::make_unique<TJsonWriter>(std::cout);
  for (const std::string &fileName : options.files) {
    bool read = false;
    if (options.classic)
      read = LoadClassic(ns, fileName, options, json.get());
    else if (json)
      read = ReadJson(ns, fileName, options, *json);
    else
      read = ReadFull(ns, fileName, options, collected);
    allRead = read && allRead;
  }
  if (json) {
    json->Finish(options.classic ? ns.get() : nullptr);
    std::cout.flush();
  } else if (options.classic && options.mof) {
    allRead = PrintMOF(ns) && allRead;
  }
  if (options.xml)
    allRead = PrintXML(ns, collected, options) && allRead;
  return allRead;
}

int Main(int argc, char **argv) {
  TOptions options;
  CLI::App app(kDescription, "cimxml");
  DescribeOptions(app, options);
  bool help = false;
  // CLI11 takes "--schema=" as "--schema" and so the next argument as its
  // file; an empty name is a missing one.
  for (int i = 1; i < argc && std::string(argv[i]) != "--"; ++i)
    if (std::string(argv[i]) == "--schema=")
      return UsageError(app, "--schema: 1 required FILE missing");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp &) {
    help = true;
  } catch (const CLI::ParseError &error) {
    return UsageError(app, error.what());
  }
  // An unknown option is a usage error even beside --help.
  const std::string unknown = FirstUnknown(app, options, argc, argv);
  if (!unknown.empty())
    return UsageError(app, "unknown option '" + unknown + "'");
  if (help) {
    std::fputs(app.help().c_str(), stdout);
    return Finish(kExitOK);
  }
  if (options.files.empty()) {
    const std::string examples = BundledExamplesDir();
    const std::string example = examples + "/schema.xml";
    if (examples.empty() || !FileExists(example)) {
      std::fprintf(stderr, "cimxml: no FILE given and the bundled example was not found in %s\n",
                   examples.empty() ? "(cannot read /proc/self/exe)" : examples.c_str());
      return kExitFailed;
    }
    std::fprintf(stderr, "cimxml: no FILE given; loading the bundled example %s\n",
                 example.c_str());
    options.files.push_back(example);
  }

  TToolLogger logger(options.quiet);
  const TLoggerScope scope(&logger);
  return Finish(Run(options) ? kExitOK : kExitFailed);
}

} // namespace

int main(int argc, char **argv) {
  try {
    return Main(argc, argv);
  } catch (const std::exception &ex) {
    // Memory that runs out outside any one file's load ends the run.
    std::fprintf(stderr, "cimxml: %s\n", ex.what());
    return kExitFailed;
  }
}
