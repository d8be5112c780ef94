#pragma once

#include "Model/Persistence/ObjectArchiver.h"

namespace Model::Persistence {

/// Writes and reads cell volumes: sizes and cell sizes as attributes of `Object`, the material ids
/// of the cells in index order as the text of `State`, the place as attributes of `Position`. What
/// else a cell knows is not kept. Cell sizes and places keep six significant digits.
class TotalVolumeArchiver final : public ObjectArchiver
{
public:
    TotalVolumeArchiver() = default;

    void setWriter(QXmlStreamWriter *writer) override { m_writer = writer; }
    void setReader(QXmlStreamReader *reader) override { m_reader = reader; }
    void setMaterialMap(const MaterialMap *map) override { m_materialMap = map; }
    /// Holds the volume's cell lock while the cells are written.
    void save(const boost::shared_ptr<Object> &object) override;
    /// A volume with its surfaces built, from whatever the element says: cells that have no number
    /// are empty, as are those whose number cannot be read; surplus numbers are dropped. Sizes that
    /// are missing or no numbers are 0, cell sizes 1, coordinates 0; no numbers are also those
    /// beyond 32-bit float and, as cell sizes, those that are not above 0. Sizes whose product is
    /// beyond 32 bits give a volume without cells, all sizes 0. Empty if the cells would not fit
    /// into the memory of the machine; the reader then still stands on the start of the element.
    boost::shared_ptr<Object> load() override;

private:
    QXmlStreamWriter *m_writer = nullptr;
    QXmlStreamReader *m_reader = nullptr;
    const MaterialMap *m_materialMap = nullptr;
};

} // namespace Model::Persistence
