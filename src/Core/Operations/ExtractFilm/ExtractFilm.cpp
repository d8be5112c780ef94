#include "Core/Operations/ExtractFilm/ExtractFilm.h"

#include "Core/Operations/ExtractFilm/FilmExtraction.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

namespace {

constexpr ProcessMessages Messages{": cell volume selected.", ": Operation Canceled!",
                                   ": select a cell volume and press Enter/Return."};

/// Cells between the source and the result.
constexpr std::uint32_t Gap = 10;

} // namespace

ExtractFilm::ExtractFilm(Workspace *workspace)
    : ObjectOperation("Extract Film", Id),
      m_workspace(workspace),
      m_sequence(workspace, this, Messages)
{}

void ExtractFilm::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void ExtractFilm::setFilm(std::uint32_t film)
{
    m_film = film;
}

void ExtractFilm::setInvert(bool invert)
{
    m_invert = invert;
}

void ExtractFilm::next()
{
    if (m_state != Selecting || !m_sequence.selectVolume())
        return;
    m_state = Ready;
    // A copy: the dialog may end the operation that holds the observer.
    const boost::shared_ptr<Util::IObserver> held = m_observer;
    if (held)
        held->update();
}

void ExtractFilm::cancel()
{
    m_sequence.cancel();
}

void ExtractFilm::end()
{
    if (m_state != Ready) {
        Util::notify(m_workspace->updateObservers());
        return;
    }
    m_state = Done;
    m_result = makeResult();
    if (!m_result) {
        write("Extract Film: the extracted film does not fit into memory.");
        cancel();
        return;
    }
    m_workspace->document().addObject(m_result);
    write("Extract Film: film extracted.");
    Util::notify(m_workspace->updateObservers());
    m_workspace->interpreter().clearRequest();
    m_workspace->finishOperation();
}

boost::shared_ptr<TotalVolume> ExtractFilm::makeResult()
{
    TotalVolume &source = *m_sequence.volume();
    FilmExtraction extraction(&source, m_film, m_invert);
    if (!extraction.fits())
        return {};
    boost::shared_ptr<TotalVolume> result;
    try {
        const std::vector<std::uint32_t> ids = extraction.extract();
        result = boost::make_shared<TotalVolume>(source.sizeX(), source.sizeY(), source.sizeZ(),
                                                 source.cellSizeX(), source.cellSizeY(),
                                                 source.cellSizeZ(), source.position(), ids);
    } catch (const std::bad_alloc &) {
        return {};
    }
    if (!extraction.found())
        write("Extract Film: the cell volume does not hold this film, the result is empty.");
    const float largest = std::max({source.cellSizeX(), source.cellSizeY(), source.cellSizeZ()});
    result->translate({(static_cast<double>(source.sizeX()) + Gap) * largest, 0.0, 0.0});
    return result;
}

std::int32_t ExtractFilm::undo()
{
    m_workspace->document().removeObject(m_result);
    Util::notify(m_workspace->updateObservers());
    return 0;
}

void ExtractFilm::redo()
{
    if (!m_workspace->document().findObject(m_result->id()))
        m_workspace->document().addObject(m_result);
    Util::notify(m_workspace->updateObservers());
}

void ExtractFilm::write(const char *message)
{
    m_workspace->interpreter().writeMessage(message);
}

} // namespace Core::Operations
