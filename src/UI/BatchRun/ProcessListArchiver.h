#pragma once

#include "UI/BatchRun/ProcessData.h"

#include <QString>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <vector>

class QIODevice;

namespace Ui {

/// Turns a list of process steps into an XML file and back. Built for one list, on the stack of
/// whoever saves or loads. Shows the user nothing; what it meets goes to the log.
class ProcessListArchiver final
{
public:
    /// Keeps a copy of the list to save; loading needs none.
    explicit ProcessListArchiver(const std::vector<ProcessData> &list = {});

    /// Appends the steps of a file to `list`; their ids are new. False if the file cannot be
    /// opened, and as `readProcessList`.
    bool loadProcessList(const QString &fileName, std::vector<ProcessData> &list);
    /// Writes the file anew. False if it cannot be opened for writing, and as `writeProcessList`.
    bool saveProcessList(const QString &fileName);

    /// Reads an open device. Content that is damaged gives the steps before the damage, the last
    /// one with the parameters read so far, and is no failure; bytes that are no UTF-8 count as
    /// damage at the beginning of their block of some thousand bytes. False if there is no
    /// `Process-List` element; also, with everything read, if this archiver's writer has an error.
    bool readProcessList(QIODevice &device, std::vector<ProcessData> &list);
    /// Writes to an open device. False if the writer has an error: the device failed, or a text
    /// holds characters that XML has not: those are left out, but half of a surrogate pair spoils
    /// the rest. An error stays with the archiver.
    bool writeProcessList(QIODevice &device);

    /// Reads the `Process-Data` start element on which the reader stands, and on to the first
    /// start element that is no `Parameter`, or the end. A step of type ProcessData::Unreadable if
    /// the reader stands on anything else, as it does outside of `readProcessList`.
    ProcessData readProcessData();

private:
    void writeProcessData(ProcessData &step);
    /// Passes over everything else, end elements too. At the end of the content if none is left.
    void moveToNextStartElement();
    /// The same, and logs where it came to; at the end that is an empty name.
    void moveToNextTag();
    bool isAt(const QString &elementName) const;

    std::vector<ProcessData> m_list;
    QXmlStreamWriter m_writer;
    QXmlStreamReader m_reader;
    /// Stays empty: the names of files come with each call.
    QString m_fileName;
};

} // namespace Ui
