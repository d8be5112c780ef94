// Saving and opening a document: what a user waits for after Ctrl+S and Ctrl+O, with the trenched
// wafer. Files lie in the working directory, as a user's lie on a disk that caches. The floor, in
// the same run, is writing and reading a plain file of the same bytes. What opening does beyond
// the text, the volume with its picture, is measured by itself.

#include "Wafer.h"

#include "Core/Operations/Document/DocumentFile.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using Benchmarks::Size;
using Benchmarks::sizeOf;
using Model::Automaton::TotalVolume;

const QString FileName = QStringLiteral("document-benchmark.lth");

boost::shared_ptr<TotalVolume> makeVolume(const Size &size, const std::vector<std::uint32_t> &ids)
{
    return boost::make_shared<TotalVolume>(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f,
                                           Util::Vector3D(), ids);
}

/// Creating one may wait for a second.
Core::Workspace &emptyWorkspace()
{
    static Core::Workspace s_workspace;
    s_workspace.document().reset();
    return s_workspace;
}

void save(const Size &size)
{
    Core::Workspace &workspace = emptyWorkspace();
    workspace.document().addObject(makeVolume(size, Benchmarks::trenchMaterials(size)));
    Core::Operations::saveDocument(FileName, workspace);
    workspace.document().reset();
}

QByteArray savedBytes(const Size &size)
{
    save(size);
    QFile file(FileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void setRates(benchmark::State &state, const Size &size, qint64 bytes)
{
    state.counters["cells"] = benchmark::Counter(static_cast<double>(size.cells()) *
                                                     static_cast<double>(state.iterations()),
                                                 benchmark::Counter::kIsRate);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * bytes);
    QFile::remove(FileName);
}

void BM_DocumentSave(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const qint64 bytes = savedBytes(size).size();
    Core::Workspace &workspace = emptyWorkspace();
    workspace.document().addObject(makeVolume(size, Benchmarks::trenchMaterials(size)));
    for (auto _ : state)
        Core::Operations::saveDocument(FileName, workspace);
    if (QFile(FileName).size() != bytes || bytes < static_cast<qint64>(2 * size.cells()))
        state.SkipWithError("the file has another length");
    workspace.document().reset();
    setRates(state, size, bytes);
}

void BM_DocumentOpen(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const qint64 bytes = savedBytes(size).size();
    Core::Workspace &workspace = emptyWorkspace();
    for (auto _ : state) {
        state.PauseTiming();
        workspace.document().reset();
        state.ResumeTiming();
        Core::Operations::openDocument(FileName, workspace);
    }
    const auto objects = workspace.document().objects();
    const auto volume = objects.size() == 1
                            ? boost::dynamic_pointer_cast<TotalVolume>(objects.front())
                            : boost::shared_ptr<TotalVolume>();
    const std::vector<std::uint32_t> expected = Benchmarks::trenchMaterials(size);
    bool same = volume != nullptr;
    if (volume) {
        const auto *cells = volume->voxels();
        for (std::size_t i = 0; i < expected.size(); ++i)
            same = same && cells[i].material() == expected[i];
        volume->releaseVoxels();
    }
    if (!same)
        state.SkipWithError("the cells did not come back");
    workspace.document().reset();
    setRates(state, size, bytes);
}

void BM_DocumentVolumeAndPicture(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const std::vector<std::uint32_t> ids = Benchmarks::trenchMaterials(size);
    std::size_t faces = 0;
    boost::shared_ptr<TotalVolume> volume;
    for (auto _ : state) {
        state.PauseTiming();
        volume.reset();
        state.ResumeTiming();
        volume = makeVolume(size, ids);
        volume->painter().rebuild();
        faces = volume->painter().opaqueFaces().size();
    }
    if (faces == 0)
        state.SkipWithError("there is no picture");
    volume.reset();
    setRates(state, size, savedBytes(size).size());
}

void BM_DocumentFloorWrite(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const QByteArray bytes = savedBytes(size);
    qint64 written = 0;
    for (auto _ : state) {
        QFile file(FileName);
        file.open(QIODevice::WriteOnly);
        written = file.write(bytes);
        file.close();
    }
    if (written != bytes.size() || bytes.isEmpty())
        state.SkipWithError("the bytes were not written");
    setRates(state, size, bytes.size());
}

void BM_DocumentFloorRead(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const QByteArray expected = savedBytes(size);
    QByteArray bytes;
    for (auto _ : state) {
        QFile file(FileName);
        file.open(QIODevice::ReadOnly);
        bytes = file.readAll();
    }
    if (bytes != expected || bytes.isEmpty())
        state.SkipWithError("the bytes were not read");
    setRates(state, size, expected.size());
}

void atAllSizes(benchmark::internal::Benchmark *subject)
{
    subject->Arg(100)->Arg(200)->Arg(400)->UseRealTime()->Unit(benchmark::kMillisecond);
}
BENCHMARK(BM_DocumentSave)->Apply(atAllSizes);
BENCHMARK(BM_DocumentOpen)->Apply(atAllSizes);
BENCHMARK(BM_DocumentVolumeAndPicture)->Apply(atAllSizes);
BENCHMARK(BM_DocumentFloorWrite)->Apply(atAllSizes);
BENCHMARK(BM_DocumentFloorRead)->Apply(atAllSizes);

} // namespace
