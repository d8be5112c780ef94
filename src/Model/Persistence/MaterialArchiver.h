#pragma once

#include "Model/Materials/Material.h"

class QXmlStreamReader;
class QXmlStreamWriter;

namespace Model::Persistence {

/// Turns a material into the XML element `Material` and back, for the registry's file and for
/// documents.
class MaterialArchiver final
{
public:
    MaterialArchiver() = delete;

    /// Reads the start element on which the reader stands. `ok`, which may be null, becomes true if
    /// the element is a `Material` with an id other than 0 and a name; the values read come back in
    /// either case. Numbers that are missing or no numbers give 0, a missing name the empty text, a
    /// missing colour the default one. A null reader or another element gives the empty material.
    static Materials::Material loadMaterial(QXmlStreamReader *reader, bool *ok = nullptr);

    /// Writes one empty element. Six significant digits of each number are kept. False if the
    /// writer has an error afterwards, or is null.
    static bool saveMaterial(QXmlStreamWriter *writer, const Materials::Material &material);
};

} // namespace Model::Persistence
