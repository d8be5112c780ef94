// Writes the example process lists into a folder:
//   lithara_example_lists FOLDER
#include "ExampleLists.h"

#include "UI/BatchRun/ProcessListArchiver.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const ExampleList &list : exampleLists()) {
        const QString file = folder.filePath(QLatin1String(list.fileName));
        if (!Ui::ProcessListArchiver(list.steps).saveProcessList(file)) {
            std::fprintf(stderr, "Cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
