#pragma once

#include <QString>

#include <functional>

class QIODevice;
class QXmlStreamReader;
class QXmlStreamWriter;

namespace Model::Persistence {

/// One per-user XML file of a registry, in the folder `Lithara` under the user's home directory.
/// Holds names only, so it may be used before main() runs.
class RegistryFile final
{
public:
    /// Called for each start element below the root, with the reader on it; may read on.
    using ElementReader = std::function<void(QXmlStreamReader &)>;
    /// Writes all elements below the root.
    using ElementWriter = std::function<void(QXmlStreamWriter &)>;

    RegistryFile(const QString &fileName, const QString &rootName);

    /// Reads the user's file. False if it is missing or cannot be opened, and as `read`.
    bool load(const ElementReader &readElement) const;
    /// Reads an open device. False, with nothing read, if the root element has another name; false,
    /// with everything before the error read, if the XML is malformed.
    bool read(QIODevice &device, const ElementReader &readElement) const;
    /// Writes the user's file anew, making its folder if needed. Does nothing if that fails.
    void save(const ElementWriter &writeElements) const;

private:
    QString m_fileName;
    QString m_rootName;
};

} // namespace Model::Persistence
