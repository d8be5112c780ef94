#pragma once

#include "Core/Operations/GlueSubstrate/GlueSubstrate.h"
#include "Core/Operations/ObjectOperation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}
namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Bonds two wafers: takes a base and a top out of the document and adds one volume with the top's
/// body on the base's. The user selects the base, presses Enter, selects the top and presses Enter;
/// then the observer asks how the volume should be. The surfaces of the result are built by whoever
/// changes it next; until then only its box can be picked.
class GlueSubstrateOperation final : public ObjectOperation
{
public:
    static constexpr std::uint32_t Id = 12;

    /// The workspace is not owned.
    explicit GlueSubstrateOperation(Workspace *workspace);

    /// Told when both volumes are there.
    void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// The rest in cells, 0 until both volumes are there. Final sizes start at the smallest ones,
    /// with one layer of z more; displacement at 0, with the top as it is.
    std::uint32_t minimumX() const { return m_measures.minimumX; }
    std::uint32_t minimumY() const { return m_measures.minimumY; }
    std::uint32_t minimumZ() const { return m_measures.minimumZ; }
    std::uint32_t maximumDisplacementX() const { return m_measures.maximumDisplacementX; }
    std::uint32_t maximumDisplacementY() const { return m_measures.maximumDisplacementY; }
    void setFinalSize(std::uint32_t x, std::uint32_t y, std::uint32_t z);
    void setDisplacement(std::uint32_t x, std::uint32_t y);
    void setInvertTop(bool invert);

    /// Cancels, and says so, if the selected top has no filled cell.
    void next() override;
    /// Leaves without a message.
    void cancel() override;
    /// Glues, if two different volumes are there; cancels otherwise, and if the result would not
    /// fit into memory, which it says.
    void end() override;
    /// Answers 0: the entry stays where it is, and is not redone.
    std::int32_t undo() override;
    void redo() override;

private:
    enum State : std::uint32_t
    {
        ChoosingBase = 0,
        ChoosingTop = 1,
        Running = 2,
        Done = 3
    };

    void takeBase();
    void takeTop();
    boost::shared_ptr<Model::Automaton::TotalVolume> makeResult() const;
    void write(const char *message);

    std::uint32_t m_state = ChoosingBase;
    GlueMeasures m_measures;
    GlueChoices m_choices;
    float m_cellSizeX = 0.0f;
    float m_cellSizeY = 0.0f;
    float m_cellSizeZ = 0.0f;
    Workspace *m_workspace;
    ProcessSequence m_base;
    ProcessSequence m_top;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_result;
    boost::shared_ptr<Util::IObserver> m_observer;
};

} // namespace Core::Operations
