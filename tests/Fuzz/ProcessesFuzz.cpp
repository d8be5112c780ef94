#include "FuzzSupport.h"

#include "Model/Persistence/ProcessArchiver.h"
#include "Model/Process/ProcessFactory.h"

#include <QXmlStreamWriter>

using Model::Persistence::ProcessArchiver;
using Model::Process::Process;
using Model::Process::ProcessFactory;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // The registry outlives an input, and what one input enters must not change the next one's run.
    const auto registry = ProcessFactory::instance();
    registry->loadDefaultProcesses();
    Fuzz::Input input(data, size);
    registry->readProcesses(input);
    const std::vector<Process> processes = registry->processes();

    // The registry itself writes to its user's file only, so its format is repeated here.
    QByteArray written;
    QXmlStreamWriter writer(&written);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Processes"));
    for (const Process &process : processes) {
        Fuzz::require(process.id() != 0 && !process.name().isEmpty(),
                      "a registered process has an id and a name");
        Fuzz::require(registry->processByName(process.name()).id() <= process.id(),
                      "a process is found by its name");
        Fuzz::require(process.compatibleMaterials().size() <=
                          process.compatibleMaterialIds().size(),
                      "a process has no materials but those of its ids");
        ProcessArchiver::saveProcess(process, writer);
        // A name with characters that XML does not have; those are left out and so cannot come
        // back.
        if (writer.hasError())
            return 0;
    }
    writer.writeEndElement();
    writer.writeEndDocument();

    registry->loadDefaultProcesses();
    Fuzz::Input again(written);
    Fuzz::require(registry->readProcesses(again), "processes that were written can be read");
    const std::vector<Process> back = registry->processes();
    Fuzz::require(back.size() == processes.size(), "as many processes come back as were written");
    for (std::size_t i = 0; i < back.size(); ++i) {
        Fuzz::require(back[i].id() == processes[i].id(), "a process keeps its id");
        Fuzz::require(back[i].name() == processes[i].name(), "a process keeps its name");
        Fuzz::require(back[i].compatibleMaterialIds() == processes[i].compatibleMaterialIds(),
                      "a process keeps its materials");
    }
    return 0;
}
