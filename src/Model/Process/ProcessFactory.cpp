#include "Model/Process/ProcessFactory.h"

#include "Model/Persistence/ProcessArchiver.h"
#include "Model/Persistence/RegistryFile.h"

#include <QLatin1String>
#include <QMutexLocker>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace Model::Process {

namespace {

Persistence::RegistryFile registryFile()
{
    return Persistence::RegistryFile(QLatin1String("processes.xml"), QLatin1String("Processes"));
}

/// "Planarization" takes no material on purpose.
std::vector<Process> builtInProcesses()
{
    return {
        {QStringLiteral("Si Wet Etching"), 1, {1}},
        {QStringLiteral("DRIE"), 2, {1}},
        {QStringLiteral("CVD"), 3, {3, 16}},
        {QStringLiteral("PVD"), 4, {4, 5, 6, 7, 8, 9, 10}},
        {QStringLiteral("Film Etching"), 5, {3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {QStringLiteral("Photolithography"), 6, {3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {QStringLiteral("Planarization"), 7},
        {QStringLiteral("Spin Coating / Soft Lithography"), 8, {11, 12, 13}},
        {QStringLiteral("Isotropic Deposition"), 9, {3, 4, 5, 6, 7, 8, 9, 10}},
        {QStringLiteral("Isotropic Etching"), 10, {1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {QStringLiteral("Electroplating"), 11, {4, 5, 6, 7, 8, 9, 10}},
        {QStringLiteral("Simple Si Oxidation"), 12, {1, 14, 15, 16}},
        {QStringLiteral("Simple Doping"), 13, {1, 14, 15, 16}},
        {QStringLiteral("Ion Implantation"), 14, {1, 14, 15, 16}},
    };
}

} // namespace

// The order matters: making the instance fills the map under the mutex.
std::map<std::uint32_t, Process> ProcessFactory::s_processes;
QMutex ProcessFactory::s_mutex;
const Process ProcessFactory::s_emptyProcess;
boost::shared_ptr<ProcessFactory> ProcessFactory::s_instance(new ProcessFactory);

ProcessFactory::ProcessFactory()
{
    if (!loadProcesses()) {
        loadDefaultProcesses();
        saveProcesses();
    }
}

boost::shared_ptr<ProcessFactory> ProcessFactory::instance()
{
    return s_instance;
}

std::vector<Process> ProcessFactory::processes() const
{
    const QMutexLocker locker(&s_mutex);
    std::vector<Process> result;
    result.reserve(s_processes.size());
    for (const auto &entry : s_processes) {
        result.push_back(entry.second);
    }
    return result;
}

Process ProcessFactory::process(std::uint32_t id) const
{
    const QMutexLocker locker(&s_mutex);
    const auto found = s_processes.find(id);
    return found == s_processes.end() ? s_emptyProcess : found->second;
}

Process ProcessFactory::processByName(const QString &name) const
{
    const QMutexLocker locker(&s_mutex);
    const auto found = std::find_if(s_processes.begin(), s_processes.end(),
                                    [&](const auto &entry) { return entry.second.name() == name; });
    return found == s_processes.end() ? s_emptyProcess : found->second;
}

bool ProcessFactory::updateProcess(const Process &process)
{
    if (process.id() == 0) {
        return false;
    }
    s_processes[process.id()] = process;
    return true;
}

bool ProcessFactory::loadProcesses()
{
    const QMutexLocker locker(&s_mutex);
    return registryFile().load(enterElement);
}

bool ProcessFactory::readProcesses(QIODevice &device)
{
    const QMutexLocker locker(&s_mutex);
    return registryFile().read(device, enterElement);
}

void ProcessFactory::loadDefaultProcesses()
{
    const QMutexLocker locker(&s_mutex);
    s_processes.clear();
    for (const Process &process : builtInProcesses()) {
        s_processes[process.id()] = process;
    }
}

void ProcessFactory::saveProcesses()
{
    const QMutexLocker locker(&s_mutex);
    registryFile().save([](QXmlStreamWriter &writer) {
        for (const auto &entry : s_processes) {
            Persistence::ProcessArchiver::saveProcess(entry.second, writer);
        }
    });
}

void ProcessFactory::enterElement(QXmlStreamReader &reader)
{
    bool ok = false;
    const Process process = Persistence::ProcessArchiver::loadProcess(reader, &ok);
    if (ok) {
        s_processes[process.id()] = process;
    }
}

} // namespace Model::Process
