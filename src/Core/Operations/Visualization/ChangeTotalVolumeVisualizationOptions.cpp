#include "Core/Operations/Visualization/ChangeTotalVolumeVisualizationOptions.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/pointer_cast.hpp>

#include <utility>

namespace Core::Operations {

using Model::Automaton::TotalVolume;
using Model::Automaton::TotalVolumePainter;

boost::shared_ptr<Util::IObserver> ChangeTotalVolumeVisualizationOptions::s_observer;

ChangeTotalVolumeVisualizationOptions::ChangeTotalVolumeVisualizationOptions(Workspace *workspace)
    : Operation("Change Visualization", Id),
      m_workspace(workspace),
      m_sequence(workspace, this)
{}

void ChangeTotalVolumeVisualizationOptions::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

VisualizationOptions ChangeTotalVolumeVisualizationOptions::options() const
{
    VisualizationOptions options;
    if (!m_sequence.volume())
        return options;
    const TotalVolumePainter &painter = m_sequence.volume()->painter();
    options.renderAtoms = painter.renderAtoms();
    options.surfaceAtomsOnly = painter.surfaceAtomsOnly();
    options.renderLinks = painter.renderLinks();
    options.renderUnitCells = painter.renderUnitCells();
    options.renderOutlines = painter.renderOutlines();
    options.showEmptyVoxels = painter.showEmptyVoxels();
    options.surfaceAlgorithm = painter.surfaceAlgorithm();
    return options;
}

void ChangeTotalVolumeVisualizationOptions::setOptions(const VisualizationOptions &options)
{
    if (!m_sequence.volume())
        return;
    m_options = options;
    m_optionsGiven = true;
}

void ChangeTotalVolumeVisualizationOptions::next()
{
    if (m_optionsGiven)
        end();
    else
        m_sequence.selectThenAsk(s_observer);
}

void ChangeTotalVolumeVisualizationOptions::cancel()
{
    // It does not leave: users know that the next operation says this once more.
    m_workspace->interpreter().writeMessage("Change Visualization: Operation Canceled!");
    m_workspace->interpreter().clearRequest();
}

void ChangeTotalVolumeVisualizationOptions::end()
{
    if (!m_optionsGiven) {
        cancel();
        m_workspace->dropOperation();
        return;
    }
    apply();
    // Colours belong to materials, so new ones concern all volumes, not only this one.
    for (const auto &object : m_workspace->document().objects())
        if (const auto volume = boost::dynamic_pointer_cast<TotalVolume>(object))
            volume->painter().refreshColors();
    m_workspace->interpreter().writeMessage("Change Visualization: Options changed.");
    m_workspace->interpreter().clearRequest();
    m_workspace->finishOperation();
}

void ChangeTotalVolumeVisualizationOptions::apply()
{
    TotalVolumePainter &painter = m_sequence.volume()->painter();
    painter.setRenderAtoms(m_options.renderAtoms);
    painter.setSurfaceAtomsOnly(m_options.surfaceAtomsOnly);
    painter.setRenderLinks(m_options.renderLinks);
    painter.setRenderUnitCells(m_options.renderUnitCells);
    painter.setRenderOutlines(m_options.renderOutlines);
    painter.setShowEmptyVoxels(m_options.showEmptyVoxels);
    painter.setSurfaceAlgorithm(m_options.surfaceAlgorithm);
    painter.rebuild();
}

} // namespace Core::Operations
