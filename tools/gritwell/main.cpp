// gritwell: the command-line host. It loads GritwellPlugin.so the way the
// host application does and drives its session and dialog functions, and it
// reads and writes state records as files and JSON.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "CliError.h"
#include "Gallery.h"
#include "PluginLibrary.h"
#include "RecordFile.h"
#include "RecordFormats.h"
#include "RecordJson.h"
#include "SliceRenderer.h"
#include "core/Texture3D.h"
#include "core/TransformData.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

struct Options {
    std::string pluginPath = PluginLibrary::defaultPath();
    std::string target;  // a generator name or a record file
    std::string input;
    std::string output;
    std::vector<std::string> assignments;
    bool planar = false;
    SliceView view;
};

PluginLibrary& loadPlugin(const Options& options) {
    static PluginLibrary plugin(options.pluginPath);
    if (!plugin.ok()) throw CliError(plugin.error(), CliError::kEnvironment);
    return plugin;
}

// A record whose version the plug-in does not read is evaluated at the
// generator's defaults; say so rather than surprise.
LoadedRecord resolveForEvaluation(const std::string& target) {
    LoadedRecord record = resolveRecord(target);
    if (!TextureFactory::isHostGenerator(*record.generator))
        throw CliError("'" + std::string(record.generator->name) +
                       "' is in the library, but host sessions never open it, so the plug-in cannot "
                       "evaluate it");
    if (!record.currentVersion)
        std::cerr << "gritwell: note: '" << target << "' is not a current " << record.generator->name
                  << " record; the plug-in evaluates the defaults instead\n";
    return record;
}

void listGenerators() {
    std::printf("%-16s %-8s %s\n", "GENERATOR", "VERSION", "RECORD");
    for (const GeneratorInfo* g : TextureFactory::hostGenerators()) {
        const std::string name(g->name);
        std::printf("%-16s %d.%-6d %d bytes\n", name.c_str(), g->majorVersion, g->minorVersion, g->recordSize);
    }
    std::string others;
    for (const GeneratorInfo* g : TextureFactory::libraryOnlyGenerators())
        others += (others.empty() ? "" : ", ") + std::string(g->name);
    if (!others.empty()) std::printf("\nIn the library, never opened by the host: %s\n", others.c_str());
}

void recordNew(const Options& options) {
    const GeneratorInfo* generator = TextureFactory::find(options.target);
    if (generator == nullptr)
        throw CliError("unknown generator '" + options.target + "' (see 'gritwell list')");
    std::vector<unsigned char> record = defaultRecord(*generator);
    for (const std::string& assignment : options.assignments) setFieldFromText(record, *generator, assignment);
    writeFileAtomically(options.output, record.data(), record.size());
}

void recordShow(const Options& options) {
    std::cout << recordToJson(readRecordFile(options.input)).dump(2) << '\n';
}

void recordFromJsonFile(const Options& options) {
    std::ifstream in(options.input);
    if (!in) throw CliError("cannot read '" + options.input + "'");
    nlohmann::ordered_json json;
    try {
        json = nlohmann::ordered_json::parse(in);
    } catch (const nlohmann::json::parse_error& e) {
        throw CliError("'" + options.input + "' is not valid JSON: " + e.what());
    }
    const std::vector<unsigned char> record = recordFromJson(json);
    writeFileAtomically(options.output, record.data(), record.size());
}

// Points "x y z", one per line, from standard input; blank lines and lines
// starting with '#' are skipped. One value per point on standard output.
void evaluatePoints(const Options& options) {
    const LoadedRecord record = resolveForEvaluation(options.target);
    PluginLibrary& plugin = loadPlugin(options);
    PluginSession session(plugin, record.bytes, options.planar ? 2 | 4 : 2);

    constexpr std::size_t kBatch = 4096;
    std::vector<float> points;
    std::vector<float> values(kBatch);
    auto flush = [&] {
        const int n = static_cast<int>(points.size() / 3);
        session.evaluate(points.data(), n, values.data());
        for (int i = 0; i < n; ++i) std::printf("%.9g\n", values[i]);
        points.clear();
    };
    std::string line;
    for (long lineNumber = 1; std::getline(std::cin, line); ++lineNumber) {
        const auto first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos || line[first] == '#') continue;
        std::istringstream fields(line);
        float x, y, z;
        std::string rest;
        if (!(fields >> x >> y >> z) || (fields >> rest))
            throw CliError("line " + std::to_string(lineNumber) + ": expected three numbers 'x y z', got '" +
                           line + "'");
        points.insert(points.end(), {x, y, z});
        if (points.size() == 3 * kBatch) flush();
    }
    flush();
}

void renderPicture(const Options& options) {
    if (options.view.size < 1 || options.view.size > 8192) throw CliError("--size must be 1 to 8192");
    if (!(options.view.extent > 0.0f)) throw CliError("--extent must be positive");
    const LoadedRecord record = resolveForEvaluation(options.target);
    SliceView view = options.view;
    view.planar = options.planar;
    writePng(options.output, renderSlice(loadPlugin(options), record.bytes, view));
}

void galleryPicture(const Options& options) { writePng(options.output, renderGallery(loadPlugin(options))); }

// ---- The dialog -------------------------------------------------------------

// The host's live-update callback: one line per update the dialog sends.
float printLiveUpdate(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, char* record, char* transformBytes) {
    const TransformData t = TransformData::fromBytes(transformBytes);
    std::printf("update: %s, %d bytes; transforms %d %g %g %g %g %g %g %g %g %g %g\n",
                Texture3D::recordName(record).c_str(), static_cast<unsigned char>(record[0]), t.flags,
                t.overallScale, t.xOffset, t.yOffset, t.zOffset, t.xScale, t.yScale, t.zScale, t.xAngle,
                t.yAngle, t.zAngle);
    std::fflush(stdout);
    return 1.0f;
}

// Opens the dialog over the record of FILE (or none), as the host does, and
// writes the record the host would keep afterwards to -o FILE.
void openDialog(const Options& options) {
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr &&
        std::getenv("QT_QPA_PLATFORM") == nullptr)
        throw CliError("the dialog needs a display: none is set (DISPLAY, WAYLAND_DISPLAY or QT_QPA_PLATFORM)",
                       CliError::kEnvironment);
    char record[256] = {};
    if (!options.input.empty()) {
        const LoadedRecord loaded = readRecordFile(options.input);
        std::memcpy(record, loaded.bytes.data(), loaded.bytes.size());
    }
    char transforms[sizeof(TransformData)];
    TransformData{}.toBytes(transforms);
    void* hostBlock[8] = {};
    hostBlock[kHostCallbackWord] = reinterpret_cast<void*>(&printLiveUpdate);

    PluginLibrary& plugin = loadPlugin(options);
    plugin.interactWithUser(nullptr, 0.0, record, sizeof record, transforms, sizeof transforms, hostBlock);

    const TransformData t = TransformData::fromBytes(transforms);
    std::printf("transforms: %d %g %g %g %g %g %g %g %g %g %g\n", t.flags, t.overallScale, t.xOffset, t.yOffset,
                t.zOffset, t.xScale, t.yScale, t.zScale, t.xAngle, t.yAngle, t.zAngle);
    // Cancel leaves the host's buffer as it was: empty when no record came in.
    const auto size = static_cast<unsigned char>(record[0]);
    if (size == 0) {
        std::printf("no record: the dialog was cancelled\n");
        return;
    }
    std::printf("record: %s, %d bytes\n", Texture3D::recordName(record).c_str(), size);
    if (!options.output.empty()) writeFileAtomically(options.output, record, size);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"gritwell: procedural textures from the command line, through GritwellPlugin.so"};
    app.require_subcommand(1);
    Options options;
    app.add_option("--plugin", options.pluginPath, "the plug-in to load (default: beside this program)");

    app.add_subcommand("list", "the generators the host can open, with version and record size")
        ->callback(listGenerators);

    CLI::App* record = app.add_subcommand("record", "write, show and convert state records");
    record->require_subcommand(1);
    CLI::App* recordNewCmd = record->add_subcommand("new", "a record with the defaults and the given fields");
    recordNewCmd->add_option("NAME", options.target, "generator name, e.g. Checkerboard")->required();
    recordNewCmd->add_option("--set", options.assignments, "FIELD=VALUE, repeatable");
    recordNewCmd->add_option("-o,--output", options.output, "the record file to write")->required();
    recordNewCmd->callback([&] { recordNew(options); });

    CLI::App* recordShowCmd = record->add_subcommand("show", "print a record as JSON");
    recordShowCmd->add_option("FILE", options.input, "a record file")->required();
    recordShowCmd->callback([&] { recordShow(options); });

    CLI::App* fromJson = record->add_subcommand("from-json", "write a record from its JSON form");
    fromJson->add_option("FILE", options.input, "JSON as 'record show' prints it")->required();
    fromJson->add_option("-o,--output", options.output, "the record file to write")->required();
    fromJson->callback([&] { recordFromJsonFile(options); });

    record->add_subcommand("formats", "the record layouts of every generator, as a Markdown table")
        ->callback([] { std::cout << recordFormatsMarkdown(); });

    CLI::App* eval = app.add_subcommand("eval", "values at points 'x y z' read one per line from standard input");
    eval->add_option("TARGET", options.target, "generator name (its defaults) or record file")->required();
    eval->add_flag("--planar", options.planar, "evaluate in the x/y plane, as the host's planar flag does");
    eval->callback([&] { evaluatePoints(options); });

    CLI::App* render = app.add_subcommand("render", "a greyscale PNG of the slice z = Z");
    render->add_option("TARGET", options.target, "generator name (its defaults) or record file")->required();
    render->add_option("--size", options.view.size, "pixels on a side (default 256)");
    render->add_option("--z", options.view.z, "the slice's z (default 0)");
    render->add_option("--extent", options.view.extent, "texture units across, from 0 (default 4)");
    render->add_flag("--planar", options.planar, "evaluate in the x/y plane");
    render->add_option("-o,--output", options.output, "the PNG to write")->required();
    render->callback([&] { renderPicture(options); });

    CLI::App* gallery = app.add_subcommand("gallery", "every generator at its defaults, labelled, on one sheet");
    gallery->add_option("-o,--output", options.output, "the PNG to write")->required();
    gallery->callback([&] { galleryPicture(options); });

    CLI::App* dialog = app.add_subcommand(
        "dialog", "open the generator dialog; prints each live update and writes the resulting record");
    dialog->add_option("FILE", options.input, "a record file to open the dialog on (default: none)");
    dialog->add_option("-o,--output", options.output, "where to write the record after OK");
    dialog->callback([&] { openDialog(options); });

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        std::cerr << "gritwell: " << e.what() << "\nRun 'gritwell --help' for the commands.\n";
        return CliError::kBadInput;
    } catch (const CliError& e) {
        std::cerr << "gritwell: " << e.what() << '\n';
        return e.status();
    }
    return 0;
}
