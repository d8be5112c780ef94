#pragma once

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

/// Lifts one connected body of one material out of a cell volume: adds a copy of it to the
/// document, in a volume of its own beside the source, at a gap of ten cells along x. The source
/// stays as it is. The surfaces of the result are built by whoever changes it next; until then only
/// its box can be picked.
class ExtractFilm final : public ObjectOperation
{
public:
    static constexpr std::uint32_t Id = 8;

    /// The workspace is not owned.
    explicit ExtractFilm(Workspace *workspace);

    /// Told when the volume is there.
    void setObserver(boost::shared_ptr<Util::IObserver> observer);
    /// Material id.
    void setFilm(std::uint32_t film);
    /// Turns the film over, by half a turn about the x axis.
    void setInvert(bool invert);

    void next() override;
    void cancel() override;
    /// Extracts, if the volume is there and has not been used; otherwise the views are updated and
    /// no more. A film that the volume does not hold gives a volume of empty cells, and a word
    /// about it. Cancels, and says so, if the result would not fit into memory.
    void end() override;
    /// Answers 0: the entry stays where it is, and is not redone.
    std::int32_t undo() override;
    void redo() override;

private:
    enum State : std::uint32_t
    {
        Selecting = 0,
        Ready = 1,
        Done = 2
    };

    boost::shared_ptr<Model::Automaton::TotalVolume> makeResult();
    void write(const char *message);

    std::uint32_t m_state = Selecting;
    Workspace *m_workspace;
    ProcessSequence m_sequence;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_result;
    boost::shared_ptr<Util::IObserver> m_observer;
    std::uint32_t m_film = 0;
    bool m_invert = false;
};

} // namespace Core::Operations
