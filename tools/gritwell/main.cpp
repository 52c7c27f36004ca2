// gritwell: the command-line host. It loads GritwellPlugin.so the way the
// host application does and drives its session and dialog functions, paints
// meshes and renders slices through it, and reads and writes state records as
// files and JSON.

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "AtomicOutput.h"
#include "BakedPreview.h"
#include "CliError.h"
#include "Colormap.h"
#include "CommandLineErrors.h"
#include "DialogCommand.h"
#include "Gallery.h"
#include "GeneratorGuide.h"
#include "HostTransform.h"
#include "ImageStream.h"
#include "MapBaker.h"
#include "MeshPainter.h"
#include "MeshPreview.h"
#include "MeshReader.h"
#include "PlyWriter.h"
#include "ParallelEvaluator.h"
#include "PluginLibrary.h"
#include "ProgressMeter.h"
#include "RecordFile.h"
#include "RecordFormats.h"
#include "RecordJson.h"
#include "SliceRenderer.h"
#include "UvMeshReader.h"
#include "core/SimdLevel.h"
#include "core/TransformData.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

// Where the texture sits on the model: a transform record file and/or its
// fields one by one, the fields winning.
struct TransformOptions {
    std::string file;
    std::vector<float> offset;  // x, y, z
    std::vector<float> rotate;  // x, y, z, in turns
    std::vector<float> scale;   // x, y, z factors
    std::vector<float> overall; // none or one
};

struct Options {
    std::string pluginPath = PluginLibrary::defaultPath();
    std::string target;  // a generator name or a record file
    std::string input;
    std::string output;
    std::string from;  // record new --from
    std::vector<std::string> assignments;
    bool planar = false;
    SliceView view;
    TransformOptions transform;
    std::string colormap = "grey";
    std::string ramp;
    bool sixteenBit = false;
    int threads = 0;  // 0: every core
    int padding = 4;
    std::string mesh;
    std::string preview;
    int previewSize = 512;
    std::vector<double> previewView;  // none, or yaw and pitch in turns
};

constexpr const char* kTransformOrder =
    "The transform places the texture on the model: scaled (per-axis factors times the overall scale), turned "
    "about x, then y, then z (angles in turns, counter-clockwise seen from the axis' positive end), then moved "
    "by the offset; each point p is evaluated at S^-1 Rx^-1 Ry^-1 Rz^-1 (p - offset). The record's flags word "
    "goes to the session (--planar adds the planar bit).";

// The transform record the options describe, and the flags word with it.
TransformData transformRecord(const Options& options) {
    const TransformOptions& o = options.transform;
    TransformData t = o.file.empty() ? TransformData{} : HostTransform::readFile(o.file);
    // CLI11 has checked that each given option holds exactly its count of numbers.
    if (!o.offset.empty()) {
        t.xOffset = o.offset[0];
        t.yOffset = o.offset[1];
        t.zOffset = o.offset[2];
    }
    if (!o.rotate.empty()) {
        t.xAngle = o.rotate[0];
        t.yAngle = o.rotate[1];
        t.zAngle = o.rotate[2];
    }
    if (!o.scale.empty()) {
        t.xScale = o.scale[0];
        t.yScale = o.scale[1];
        t.zScale = o.scale[2];
    }
    if (!o.overall.empty()) t.overallScale = o.overall[0];
    if (options.planar) t.flags |= 4;
    return t;
}

void addPlacementOptions(CLI::App* command, Options& options) {
    TransformOptions& o = options.transform;
    command->add_option("--offset", o.offset, "X,Y,Z: move the texture (default 0,0,0)")
        ->delimiter(',')->expected(3);
    command->add_option("--rotate", o.rotate, "X,Y,Z: turn the texture about x, y, z, in turns (0.25 is 90 degrees)")
        ->delimiter(',')->expected(3);
    command->add_option("--scale", o.scale, "X,Y,Z: scale factors along x, y, z (default 1,1,1)")
        ->delimiter(',')->expected(3);
    command->add_option("--overall", o.overall, "S: the overall scale (default 1)")->expected(1);
}

void addTransformOptions(CLI::App* command, Options& options) {
    command->add_option("--transform", options.transform.file,
                        "a 44-byte transform record file, as the host stores it ('gritwell transform new')");
    addPlacementOptions(command, options);
}

// --colormap NAME, or --ramp (a name or stops), not both.
Colormap::Map colormapOf(const Options& options) {
    if (!options.ramp.empty()) {
        if (options.colormap != "grey")
            throw CliError("--colormap and --ramp both choose the colours: give one of them");
        return Colormap::parseRamp(options.ramp);
    }
    const auto map = Colormap::find(options.colormap);
    if (!map)
        throw CliError("unknown colour map '" + options.colormap + "' (there are " + std::string(Colormap::names()) +
                       ")");
    return *map;
}

void addColourOptions(CLI::App* command, Options& options, const std::string& what) {
    command->add_option("--colormap", options.colormap,
                        what + ": " + std::string(Colormap::names()) + " (default grey)");
    command->add_option("--ramp", options.ramp,
                        what + " from a ramp of stops POSITION:#RRGGBB, e.g. \"0:#1a1008,0.5:#7a4a20,1:#f0d8a0\" "
                        "(linear between stops, the end colours beyond them), or a map's name");
}

void addThreadsOption(CLI::App* command, Options& options) {
    command->add_option("--threads", options.threads,
                        "evaluate on N threads, one generator each (default: every core); the values are the same");
}

int threadsOf(const Options& options) {
    if (options.threads < 0 || options.threads > 1024) throw CliError("--threads must be 1 to 1024");
    return options.threads == 0 ? ParallelEvaluator::defaultThreads() : options.threads;
}

// The picture's format from -o, and --16bit only where it means something.
ImageStream::Format pictureFormat(const Options& options) {
    const ImageStream::Format format = ImageStream::formatOf({"-o", options.output});
    if (format == ImageStream::Format::Exr && options.sixteenBit)
        throw CliError("--16bit is for PNG: an EXR holds 32-bit floats");
    return format;
}

// A record argument as a file the command reads; a generator name reads
// no file.
CommandFile recordInput(const std::string& name, const std::string& target) {
    return {name, TextureFactory::find(target) != nullptr ? std::string() : target};
}

// The extension names the format: a file called x.jpg never gets PNG bytes.
// Standard output and devices have no name to go by.
void requireExtension(const CommandFile& output, const std::string& extension, const std::string& what) {
    struct stat status {};
    if (output.path == "-" || (::stat(output.path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))) return;
    std::string given = std::filesystem::path(output.path).extension().string();
    std::transform(given.begin(), given.end(), given.begin(), [](unsigned char c) { return std::tolower(c); });
    if (given == extension) return;
    const std::string formats = "; " + what + " are written as: " + extension;
    if (given.empty()) throw CliError(output.name + " '" + output.path + "' has no extension to name its format" + formats);
    throw CliError(output.name + " '" + output.path + "': " + given + " is not a format gritwell writes" + formats);
}

PluginLibrary& loadPlugin(const Options& options) {
    static PluginLibrary plugin(options.pluginPath);
    if (!plugin.ok()) throw CliError(plugin.error(), CliError::kEnvironment);
    return plugin;
}

// A record of another version is converted by the plug-in where its
// generator knows the layout and is otherwise evaluated at the defaults; say
// which rather than surprise.
LoadedRecord resolveForEvaluation(const std::string& target) {
    LoadedRecord record = resolveRecord(target);
    if (!TextureFactory::isHostGenerator(*record.generator))
        throw CliError("'" + std::string(record.generator->name) +
                       "' is in the library, but host sessions never open it, so the plug-in cannot "
                       "evaluate it");
    if (!record.currentVersion) std::cerr << "gritwell: note: '" << target << "' is " << versionNote(record) << '\n';
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

void warn(const std::string& warning) {
    if (!warning.empty()) std::cerr << "gritwell: warning: " << warning << '\n';
}

void describeGenerators(const std::string& name, bool json) {
    if (name.empty()) {
        std::cout << (json ? GeneratorGuide::listJson().dump(2) + "\n" : GeneratorGuide::listText());
        return;
    }
    const GeneratorInfo* generator = TextureFactory::find(name);
    if (generator == nullptr)
        throw CliError("unknown generator '" + name + "'" + nearestGeneratorHint(name) + " (see 'gritwell info')");
    std::cout << (json ? GeneratorGuide::generatorJson(*generator).dump(2) + "\n"
                       : GeneratorGuide::generatorText(*generator));
}

// NAME's defaults, or the record of --from (whose generator NAME, when
// given, must be); then the --set fields.
void recordNew(const Options& options) {
    checkCommandFiles({{"-o", options.output}}, {{"--from", options.from}});
    const GeneratorInfo* generator = nullptr;
    std::vector<unsigned char> record;
    if (!options.from.empty()) {
        const LoadedRecord loaded = resolveRecord(options.from);
        if (!options.target.empty() && options.target != loaded.generator->name)
            throw CliError("'" + options.from + "' is a " + std::string(loaded.generator->name) + " record, not " +
                           options.target);
        generator = loaded.generator;
        // What the plug-in makes of it: an older version converted or ignored.
        if (!loaded.currentVersion)
            std::cerr << "gritwell: note: '" << options.from << "' is " << versionNote(loaded)
                      << "; the new record starts from that\n";
        record = adoptedRecord(loaded);
    } else {
        if (options.target.empty()) throw CliError("record new needs a generator NAME or --from FILE");
        generator = TextureFactory::find(options.target);
        if (generator == nullptr)
            throw CliError("unknown generator '" + options.target + "'" + nearestGeneratorHint(options.target) +
                           " (see 'gritwell list')");
        record = defaultRecord(*generator);
    }
    for (const std::string& assignment : options.assignments) warn(setFieldFromText(record, *generator, assignment));
    writeFileAtomically(options.output, record.data(), record.size());
}

// Sets fields of a record file in place: all of them or, on any error, none.
void recordSet(const Options& options) {
    if (TextureFactory::find(options.input) != nullptr)
        throw CliError("'" + options.input + "' is a generator name, and record set changes a record file: make one "
                       "with 'gritwell record new " + options.input + " -o FILE' (for a file of that name, give ./" +
                       options.input + ")");
    checkCommandFiles({{"FILE", options.input}});
    LoadedRecord loaded = readRecordFile(options.input);
    if (!loaded.currentVersion)
        throw CliError("'" + options.input + "' is not a current " + std::string(loaded.generator->name) +
                       " record, so its fields are not known; make a current one with 'gritwell record new --from " +
                       options.input + " -o NEW'");
    if (options.assignments.empty()) throw CliError("record set needs at least one FIELD=VALUE");
    for (const std::string& assignment : options.assignments)
        warn(setFieldFromText(loaded.bytes, *loaded.generator, assignment));
    writeFileAtomically(options.input, loaded.bytes.data(), loaded.bytes.size());
}

void recordShow(const Options& options) {
    std::cout << recordToJson(resolveRecord(options.input)).dump(2) << '\n';
}

void recordFromJsonFile(const Options& options) {
    checkCommandFiles({{"-o", options.output}}, {{"FILE", options.input}});
    std::error_code ec;
    if (std::filesystem::is_directory(options.input, ec))
        throw CliError("cannot read '" + options.input + "': it is a folder");
    std::ifstream in(options.input);
    if (!in) throw CliError("cannot read '" + options.input + "': " + std::strerror(errno));
    const std::vector<unsigned char> record = recordFromJsonStream(in, options.input);
    writeFileAtomically(options.output, record.data(), record.size());
}

// A transform record from --from (or the defaults) and the given fields.
void transformNew(const Options& options) {
    checkCommandFiles({{"-o", options.output}}, {{"--from", options.transform.file}});
    const TransformData t = transformRecord(options);
    [[maybe_unused]] const HostTransform checked(t);  // refuses zero scales and fields that are not finite
    char bytes[sizeof(TransformData)];
    t.toBytes(bytes);
    writeFileAtomically(options.output, bytes, sizeof bytes);
}

// A transform record as JSON, its keys named as the options that set them.
void transformShow(const Options& options) {
    const TransformData t = HostTransform::readFile(options.input);
    nlohmann::ordered_json json;
    json["flags"] = t.flags;
    json["planar"] = (t.flags & 12) != 0;
    json["offset"] = {floatToJson(t.xOffset), floatToJson(t.yOffset), floatToJson(t.zOffset)};
    json["rotate"] = {floatToJson(t.xAngle), floatToJson(t.yAngle), floatToJson(t.zAngle)};
    json["scale"] = {floatToJson(t.xScale), floatToJson(t.yScale), floatToJson(t.zScale)};
    json["overall"] = floatToJson(t.overallScale);
    std::cout << json.dump(2) << '\n';
}

// Points "x y z", one per line, from standard input (see readPointLine).
// One value per point on standard output.
void evaluatePoints(const Options& options) {
    const LoadedRecord record = resolveForEvaluation(options.target);
    const TransformData transforms = transformRecord(options);
    const HostTransform transform(transforms);
    PluginLibrary& plugin = loadPlugin(options);
    PluginSession session(plugin, record.bytes, transforms);
    const BatchEvaluator evaluate = transformedEvaluator(session, transform);

    constexpr std::size_t kBatch = 4096;
    std::vector<float> points;
    std::vector<float> values(kBatch);
    auto flush = [&] {
        const int n = static_cast<int>(points.size() / 3);
        evaluate(points.data(), n, values.data());
        for (int i = 0; i < n; ++i) std::printf("%.9g\n", values[i]);
        points.clear();
    };
    std::string line;
    for (long lineNumber = 1; std::getline(std::cin, line); ++lineNumber) {
        float xyz[3];
        if (readPointLine(line, lineNumber, xyz)) points.insert(points.end(), xyz, xyz + 3);
        if (points.size() == 3 * kBatch) flush();
    }
    flush();
}

void renderPicture(const Options& options) {
    if (options.view.size < 1 || options.view.size > 65536) throw CliError("--size must be 1 to 65536");
    if (!(options.view.extent > 0.0f) || !std::isfinite(options.view.extent))
        throw CliError("--extent must be positive and finite");
    if (!std::isfinite(options.view.z)) throw CliError("--z must be finite");
    checkCommandFiles({{"-o", options.output}},
                      {recordInput("TARGET", options.target), {"--transform", options.transform.file}});
    const ImageStream::Format format = pictureFormat(options);
    const Colormap::Map map = colormapOf(options);
    const int threads = threadsOf(options);
    const LoadedRecord record = resolveForEvaluation(options.target);
    const TransformData transforms = transformRecord(options);
    const HostTransform transform(transforms);
    ParallelEvaluator parallel(loadPlugin(options), record.bytes, transforms, transform, threads);

    // Bands of rows, each evaluated on one thread and written in order, so
    // memory holds a few bands whatever the size.
    const int n = options.view.size;
    constexpr int kBandRows = 16;
    const int bands = (n + kBandRows - 1) / kBandRows;
    auto rowsOf = [&](int band) { return std::min(kBandRows, n - band * kBandRows); };
    ImageStream image(options.output, format, n, n, map, options.sixteenBit ? 16 : 8);
    std::vector<std::vector<float>> slots(static_cast<std::size_t>(parallel.window()));
    parallel.run(
        bands,
        [&](int band, int slot, const BatchEvaluator& evaluate) {
            std::vector<float>& values = slots[static_cast<std::size_t>(slot)];
            values.resize(static_cast<std::size_t>(rowsOf(band)) * n);
            sliceRows(evaluate, options.view, band * kBandRows, rowsOf(band), values.data());
        },
        [&](int band, int slot) { image.writeRows(slots[static_cast<std::size_t>(slot)].data(), rowsOf(band)); });
    image.commit();
}

// The largest map `bake --preview` holds whole (a gigabyte of floats).
constexpr int kMaxPreviewedMap = 16384;

// The view of `--preview`: its size, `--view` and the colours of the map.
MeshPreview::View previewViewOf(const Options& options, const Colormap::Map& map) {
    MeshPreview::View view;
    view.size = options.previewSize;
    if (!options.previewView.empty()) {
        view.yawTurns = options.previewView[0];
        view.pitchTurns = options.previewView[1];
    }
    view.map = map;
    return view;
}

// Bakes the texture onto the mesh's UV layout (MapBaker), band by band on
// every thread, and streams the map out.
void bakeMap(const Options& options) {
    if (options.view.size < 1 || options.view.size > 65536) throw CliError("--size must be 1 to 65536");
    if (options.padding < 0 || options.padding > 65536) throw CliError("--padding must be 0 to 65536");
    const bool previewing = !options.preview.empty();
    if (previewing && options.view.size > kMaxPreviewedMap)
        throw CliError("--preview holds the whole map in memory: --size at most " + std::to_string(kMaxPreviewedMap) +
                       " with it");
    if (options.previewSize < 16 || options.previewSize > 4096) throw CliError("--preview-size must be 16 to 4096");
    std::vector<CommandFile> outputs = {{"-o", options.output}};
    if (previewing) outputs.push_back({"--preview", options.preview});
    checkCommandFiles(outputs, {{"MESH", options.mesh},
                                recordInput("TARGET", options.target),
                                {"--transform", options.transform.file}});
    if (previewing) requireExtension(outputs[1], ".png", "pictures");
    const ImageStream::Format format = pictureFormat(options);
    const Colormap::Map map = colormapOf(options);
    const int threads = threadsOf(options);
    const LoadedRecord record = resolveForEvaluation(options.target);
    const TransformData transforms = transformRecord(options);
    const HostTransform transform(transforms);
    const int n = options.view.size;
    ImageStream image(options.output, format, n, n, map, options.sixteenBit ? 16 : 8);
    std::optional<AtomicOutput> preview;
    if (previewing) preview.emplace(options.preview);

    ProgressMeter progress("bake");
    progress.note("reading " + options.mesh);
    const UvMesh mesh = UvMeshReader::read(options.mesh);
    const MapBaker baker(mesh, n, options.padding);
    const MapBaker::LeftOut& out = baker.leftOut();
    auto note = [](std::size_t count, const std::string& why) {
        if (count > 0) std::cerr << "gritwell: note: " << count << (count == 1 ? " face" : " faces") << " left out: " << why << '\n';
    };
    note(mesh.facesWithoutUvs, "no texture coordinates");
    note(out.notFinite, "texture coordinates or position not finite");
    note(out.noArea, "no area in the UV map");
    note(out.tooLarge, "spans more than the whole UV map");
    if (baker.wrapped() > 0)
        std::cerr << "gritwell: note: " << baker.wrapped() << (baker.wrapped() == 1 ? " face has" : " faces have")
                  << " texture coordinates outside 0..1; they wrap, as engines sample them\n";

    ParallelEvaluator parallel(loadPlugin(options), record.bytes, transforms, transform, threads);
    const auto window = static_cast<std::size_t>(parallel.window());
    std::vector<MapBaker::Scratch> scratch(window);
    std::vector<std::vector<float>> slots(window);
    // Counted in texels, the points of the map.
    progress.begin(static_cast<std::uint64_t>(n) * static_cast<std::uint64_t>(n));
    progress.update(0);
    std::uint64_t rowsDone = 0;
    std::vector<float> whole;  // the map, for the preview only
    if (previewing) whole.reserve(static_cast<std::size_t>(n) * n);
    parallel.run(
        baker.bands(),
        [&](int band, int slot, const BatchEvaluator& evaluate) {
            std::vector<float>& values = slots[static_cast<std::size_t>(slot)];
            values.resize(static_cast<std::size_t>(baker.bandRows(band)) * n);
            baker.bake(band, evaluate, scratch[static_cast<std::size_t>(slot)], values.data());
        },
        [&](int band, int slot) {
            const std::vector<float>& rows = slots[static_cast<std::size_t>(slot)];
            image.writeRows(rows.data(), baker.bandRows(band));
            if (previewing) whole.insert(whole.end(), rows.begin(), rows.end());
            rowsDone += static_cast<std::uint64_t>(baker.bandRows(band));
            progress.update(rowsDone * static_cast<std::uint64_t>(n));
        });
    progress.finish();
    if (!previewing) {
        image.commit();
        return;
    }
    const std::vector<unsigned char> png = encodePng(BakedPreview::render(mesh, whole, n, previewViewOf(options, map)));
    if (std::fwrite(png.data(), 1, png.size(), preview->file()) != png.size())
        throw CliError("cannot write '" + options.preview + "': " + std::strerror(errno));
    AtomicOutput::commitAll({&image.finishRows(), &*preview});
}

// Paints every vertex of the mesh and writes it as PLY (and a picture of it
// with --preview). The outputs are opened first, so an unwritable one is
// reported before the work, and written only when everything succeeded.
void paintMesh(const Options& options) {
    if (options.previewSize < 16 || options.previewSize > 4096) throw CliError("--preview-size must be 16 to 4096");
    std::vector<CommandFile> outputs = {{"-o", options.output}};
    if (!options.preview.empty()) outputs.push_back({"--preview", options.preview});
    checkCommandFiles(outputs, {{"MESH", options.mesh},
                                recordInput("TARGET", options.target),
                                {"--transform", options.transform.file}});
    requireExtension(outputs[0], ".ply", "painted meshes");
    if (!options.preview.empty()) requireExtension(outputs[1], ".png", "pictures");
    const Colormap::Map map = colormapOf(options);
    const LoadedRecord record = resolveForEvaluation(options.target);
    const TransformData transforms = transformRecord(options);
    const HostTransform transform(transforms);
    AtomicOutput ply(options.output);
    std::optional<AtomicOutput> preview;
    if (!options.preview.empty()) preview.emplace(options.preview);

    const int threads = threadsOf(options);
    ProgressMeter progress("paint");
    progress.note("reading " + options.mesh);
    const Mesh mesh = MeshReader::read(options.mesh);
    ParallelEvaluator parallel(loadPlugin(options), record.bytes, transforms, transform, threads);
    const std::vector<float> values = MeshPainter::paint(parallel, mesh, progress);

    if (!PlyWriter::write(ply.file(), mesh, values, map))
        throw CliError("cannot write '" + options.output + "': " + std::strerror(errno));
    std::vector<unsigned char> png;
    if (preview) {
        png = encodePng(MeshPreview::render(mesh, values, previewViewOf(options, map)));
        if (std::fwrite(png.data(), 1, png.size(), preview->file()) != png.size())
            throw CliError("cannot write '" + options.preview + "': " + std::strerror(errno));
    }
    AtomicOutput::commitAll({&ply, preview ? &*preview : nullptr});
}

// --simd LEVEL: the instruction set of this process's core and of the
// plug-in's sessions, held down for comparisons; every level gives the same
// values.
void requestSimdLevel(const std::string& name) {
    const std::optional<SimdLevel> level = simdLevelFromName(name);
    if (!level) throw CliError("--simd must be scalar, avx2 or avx512, not '" + name + "'");
    PluginLibrary::requestSimdLevel(*level);
    if (simdLevel() != *level)
        std::cerr << "gritwell: note: this processor runs at most " << simdLevelName(simdLevel()) << ", so --simd "
                  << name << " runs " << simdLevelName(simdLevel()) << '\n';
}

void galleryPicture(const Options& options) {
    checkCommandFiles({{"-o", options.output}});
    requireExtension({"-o", options.output}, ".png", "pictures");
    writePng(options.output, renderGallery(loadPlugin(options)));
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"gritwell: procedural textures from the command line, through GritwellPlugin.so"};
    app.require_subcommand(1);
    app.set_version_flag("--version", "gritwell " GRITWELL_VERSION);
    Options options;
    app.add_option("--plugin", options.pluginPath,
                   "the plug-in to load (default: beside this program, or ../lib/gritwell/ from it)");
    // Its callback runs before any command's, so the choice holds for the whole run.
    app.add_option_function<std::string>("--simd", requestSimdLevel,
                                         "hold the vector paths to scalar, avx2 or avx512 (default: the best this "
                                         "processor runs); the values are the same, only the speed differs");

    app.add_subcommand("list", "the generators the host can open, with version and record size")
        ->callback(listGenerators);

    bool json = false;
    CLI::App* info = app.add_subcommand(
        "info", "the generators, each in a line; or every field of one: type, default, the range the dialog "
                "allows, its meaning and an enumeration's values");
    info->add_option("NAME", options.target, "a generator's name");
    info->add_flag("--json", json, "as JSON, for scripts");
    info->callback([&] { describeGenerators(options.target, json); });

    CLI::App* record = app.add_subcommand("record", "write, show and convert state records");
    record->require_subcommand(1);
    CLI::App* recordNewCmd = record->add_subcommand(
        "new", "a record with a generator's defaults, or a copy of --from FILE, and the given fields");
    recordNewCmd->add_option("NAME", options.target,
                             "generator name, e.g. Checkerboard (may be left out with --from)");
    recordNewCmd->add_option("--from", options.from,
                             "start from this record file (or generator name) instead of the defaults (an older "
                             "version is converted as the plug-in converts it)");
    recordNewCmd->add_option("--set", options.assignments, "FIELD=VALUE, repeatable");
    recordNewCmd->add_option("-o,--output", options.output, "the record file to write")->required();
    recordNewCmd->callback([&] { recordNew(options); });

    CLI::App* recordSetCmd = record->add_subcommand(
        "set", "change fields of a record file in place: all of them, or on any error none");
    recordSetCmd->add_option("FILE", options.input, "a record file of the current version")->required();
    recordSetCmd->add_option("ASSIGNMENTS", options.assignments, "FIELD=VALUE ... (see 'record show')")->required();
    recordSetCmd->callback([&] { recordSet(options); });

    CLI::App* recordShowCmd = record->add_subcommand(
        "show", "print a record as JSON, with the dialog's labels of its enumeration fields");
    recordShowCmd->add_option("TARGET", options.input, "generator name (its defaults) or record file")->required();
    recordShowCmd->callback([&] { recordShow(options); });

    CLI::App* fromJson = record->add_subcommand("from-json", "write a record from its JSON form");
    fromJson->add_option("FILE", options.input, "JSON as 'record show' prints it")->required();
    fromJson->add_option("-o,--output", options.output, "the record file to write")->required();
    fromJson->callback([&] { recordFromJsonFile(options); });

    record->add_subcommand("formats", "the record layouts of every generator, as a Markdown table")
        ->callback([] { std::cout << recordFormatsMarkdown(); });

    CLI::App* transform = app.add_subcommand("transform", "write and show transform records (where the texture sits)");
    transform->require_subcommand(1);
    CLI::App* transformNewCmd = transform->add_subcommand(
        "new", "a 44-byte transform record, as the host keeps it: the defaults (or --from FILE's) and the given fields");
    transformNewCmd->add_option("--from", options.transform.file, "start from this transform record file");
    transformNewCmd->add_flag("--planar", options.planar, "set the host's planar flag");
    addPlacementOptions(transformNewCmd, options);
    transformNewCmd->add_option("-o,--output", options.output, "the transform record file to write")->required();
    transformNewCmd->footer(kTransformOrder);
    transformNewCmd->callback([&] { transformNew(options); });
    CLI::App* transformShowCmd = transform->add_subcommand("show", "print a transform record as JSON");
    transformShowCmd->add_option("FILE", options.input, "a transform record file")->required();
    transformShowCmd->callback([&] { transformShow(options); });

    CLI::App* eval = app.add_subcommand("eval", "values at points 'x y z' read one per line from standard input");
    eval->add_option("TARGET", options.target, "generator name (its defaults) or record file")->required();
    eval->add_flag("--planar", options.planar, "evaluate in the x/y plane, as the host's planar flag does");
    addTransformOptions(eval, options);
    eval->footer(kTransformOrder);
    eval->callback([&] { evaluatePoints(options); });

    CLI::App* render = app.add_subcommand("render", "a picture (PNG or float EXR) of the slice z = Z, grey or through a colour map or ramp");
    render->add_option("TARGET", options.target, "generator name (its defaults) or record file")->required();
    render->add_option("--size", options.view.size, "pixels on a side (default 256, at most 65536)");
    render->add_option("--z", options.view.z, "the slice's z (default 0.3)");
    render->add_option("--extent", options.view.extent, "texture units across, from 0 (default 4)");
    render->add_flag("--planar", options.planar, "evaluate in the x/y plane");
    addTransformOptions(render, options);
    render->add_flag("--tileable", options.view.tileable,
                     "a tile that repeats without a seam: an eighth of the extent at each edge cross-fades into the "
                     "texture where the opposite edge continues it (every generator; the middle is the plain slice)");
    addColourOptions(render, options, "the colours");
    render->add_flag("--16bit", options.sixteenBit, "16 bits per sample instead of 8 (PNG)");
    addThreadsOption(render, options);
    render->add_option("-o,--output", options.output,
                       "the picture to write: .png, or .exr (32-bit float, values as evaluated: one channel Y, "
                       "or R, G, B through a colour map or ramp)")->required();
    render->footer(kTransformOrder);
    render->callback([&] { renderPicture(options); });

    CLI::App* paint = app.add_subcommand(
        "paint", "evaluate every vertex of a mesh and write it as PLY with the intensities and their "
                 "colours (grey, or through --colormap or --ramp); progress on a terminal");
    paint->add_option("MESH", options.mesh, "a mesh: .obj, .ply, .stl, .off, .gltf or .glb")->required();
    paint->add_option("TARGET", options.target, "generator name (its defaults) or record file")->required();
    paint->add_option("-o,--output", options.output, "the PLY to write (binary little-endian)")->required();
    paint->add_flag("--planar", options.planar, "evaluate in the x/y plane");
    addTransformOptions(paint, options);
    paint->add_option("--preview", options.preview, "also write a PNG picture of the painted mesh");
    paint->add_option("--preview-size", options.previewSize, "the picture's pixels on a side (default 512)");
    addColourOptions(paint, options, "the PLY's vertex colours and the picture's");
    addThreadsOption(paint, options);
    paint->add_option("--view", options.previewView,
                      "YAW,PITCH: the picture's camera, in turns: the model turned about its vertical axis (0 "
                      "looks at it along -z, from its +z side), then tipped towards the viewer (default 0.07,0.03)")
        ->delimiter(',')->expected(2);
    paint->footer(std::string(kTransformOrder) +
                  "\n\nCtrl-C leaves the output files as they were. Exit status 2 for bad input, 1 when the "
                  "plug-in cannot be loaded, 130 when interrupted.");
    paint->callback([&] { paintMesh(options); });

    CLI::App* bake = app.add_subcommand(
        "bake", "bake the texture onto a mesh's UV layout: a square map where each texel holds the value at the "
                "point of the surface it covers");
    bake->add_option("MESH", options.mesh, "a mesh with texture coordinates: .obj, .ply, .gltf or .glb")->required();
    bake->add_option("TARGET", options.target, "generator name (its defaults) or record file")->required();
    bake->add_option("--size", options.view.size, "texels on a side (default 256, at most 65536)");
    bake->add_option("--padding", options.padding,
                     "texels around each island filled from their neighbours, so filtering shows no seams "
                     "(default 4)");
    bake->add_flag("--planar", options.planar, "evaluate in the x/y plane");
    addTransformOptions(bake, options);
    addColourOptions(bake, options, "the colours");
    bake->add_flag("--16bit", options.sixteenBit, "16 bits per sample instead of 8 (PNG)");
    addThreadsOption(bake, options);
    bake->add_option("--preview", options.preview,
                     "also write a PNG picture of the mesh wearing the map (the map is then held in memory)");
    bake->add_option("--preview-size", options.previewSize, "the picture's pixels on a side (default 512)");
    bake->add_option("--view", options.previewView,
                     "YAW,PITCH: the picture's view, in turns: the model turned about its vertical axis, then "
                     "tipped towards the camera (default 0.07,0.03)")
        ->delimiter(',')->expected(2);
    bake->add_option("-o,--output", options.output,
                     "the map to write: .png, or .exr (32-bit float, values as evaluated)")->required();
    bake->footer(std::string(kTransformOrder) +
                 "\n\nTexture coordinates wrap (u = 1.25 is u = 0.25), as engines sample them; where faces overlap "
                 "in the UV map the face read later wins (file order; an OBJ's faces come grouped by object and "
                 "material). Faces whose texture coordinates or position are "
                 "not finite, that have no area in the map, or span more than all of it are left out, with a note. "
                 "Texels no face covers and no padding reaches are 0.");
    bake->callback([&] { bakeMap(options); });

    CLI::App* gallery = app.add_subcommand("gallery", "every generator at its defaults, labelled, on one sheet");
    gallery->add_option("-o,--output", options.output, "the PNG to write")->required();
    gallery->callback([&] { galleryPicture(options); });

    DialogOptions dialogOptions;
    CLI::App* dialog = app.add_subcommand(
        "dialog", "open the generator dialog as the host does, with a preview window beside it; prints each change "
                  "and writes the resulting record after OK");
    dialog->add_option("TARGET", dialogOptions.target,
                       "generator name (its defaults) or record file to open the dialog on (default: none)");
    dialog->add_option("-o,--output", dialogOptions.output, "where to write the record after OK (nothing after Cancel)");
    dialog->add_option("--transform", dialogOptions.transform, "a 44-byte transform record file to start from");
    dialog->add_option("--transform-out", dialogOptions.transformOutput,
                       "where to write the transform record afterwards (after Cancel too: the host keeps it)");
    CLI::Option* noPreview = dialog->add_flag("!--no-preview", dialogOptions.preview, "no preview window");
    dialog->add_option("--mesh", dialogOptions.mesh, "the preview's mesh (default: the sample bust)")
        ->excludes(noPreview);
    dialog->add_option("--preview-size", dialogOptions.previewSize,
                       "the preview's pictures' pixels on a side (default 256)")
        ->excludes(noPreview);
    // For tests; see DialogOptions::script. Not in the help.
    dialog->add_option("--script", dialogOptions.script)->delimiter(',')->group("");
    dialog->footer("Each change prints a line 'update: ...' on standard output; the preview window shows it on a "
                   "slice (as 'render' draws it) and on the mesh (as 'paint --preview' does). The dialog needs a "
                   "display.");
    dialog->callback([&] { runDialog(dialogOptions, [&]() -> PluginLibrary& { return loadPlugin(options); }); });

    if (const std::optional<std::string> unknown = unknownCommand(app, argc, argv)) {
        std::cerr << "gritwell: " << *unknown << '\n';
        return CliError::kBadInput;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        std::cerr << "gritwell: " << describeParseError(app, e) << '\n';
        return CliError::kBadInput;
    } catch (const CliError& e) {
        std::cerr << "gritwell: " << e.what() << '\n';
        return e.status();
    } catch (const nlohmann::json::exception& e) {
        // Each reader says which file; this is the net under them all.
        std::cerr << "gritwell: " << e.what() << '\n';
        return CliError::kBadInput;
    }
    return 0;
}
