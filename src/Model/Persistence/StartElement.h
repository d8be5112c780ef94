#pragma once

#include <QXmlStreamReader>

namespace Model::Persistence {

/// Moves on to the next start element, at whatever depth and out of the present element too; false
/// at the end of the document, which an error is.
inline bool moveToNextStartElement(QXmlStreamReader &reader)
{
    while (!reader.atEnd())
        if (reader.readNext() == QXmlStreamReader::StartElement)
            return true;
    return false;
}

} // namespace Model::Persistence
