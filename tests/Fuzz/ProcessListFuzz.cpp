#include "FuzzSupport.h"

#include "UI/BatchRun/ProcessListArchiver.h"

using Ui::ProcessData;
using Ui::ProcessListArchiver;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::vector<ProcessData> list;
    Fuzz::Input input(data, size);
    if (!ProcessListArchiver().readProcessList(input, list)) {
        Fuzz::require(list.empty(), "a file that holds no list gives no steps");
        return 0;
    }

    QBuffer written;
    written.open(QIODevice::WriteOnly);
    // False for texts with characters that XML does not have; those are left out and so cannot come
    // back.
    if (!ProcessListArchiver(list).writeProcessList(written))
        return 0;

    std::vector<ProcessData> back;
    Fuzz::Input again(written.data());
    Fuzz::require(ProcessListArchiver().readProcessList(again, back),
                  "a list that was written can be read");
    Fuzz::require(back.size() == list.size(), "as many steps come back as were written");
    for (std::size_t i = 0; i < list.size(); ++i) {
        Fuzz::require(back[i].processType() == list[i].processType(), "a step keeps its type");
        const QStringList names = list[i].parameters().keys();
        Fuzz::require(back[i].parameters().keys() == names, "a step keeps its parameters");
        for (const QString &name : names)
            Fuzz::require(back[i].isVisible(name) == list[i].isVisible(name),
                          "a parameter keeps its visibility");
    }
    // Values are compared in their written form: vectors keep ten digits and colours no alpha.
    QBuffer writtenAgain;
    writtenAgain.open(QIODevice::WriteOnly);
    Fuzz::require(ProcessListArchiver(back).writeProcessList(writtenAgain),
                  "a list that was read back can be written");
    Fuzz::require(writtenAgain.data() == written.data(), "parameters keep their values");
    return 0;
}
