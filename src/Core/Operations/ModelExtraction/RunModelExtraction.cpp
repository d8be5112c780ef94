#include "Core/Operations/ModelExtraction/RunModelExtraction.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/ModelExtraction/CantileverModelRule.h"
#include "Model/ModelExtraction/CantileverStructure.h"
#include "Model/ModelExtraction/CuboidDecomposer.h"
#include "Model/ModelExtraction/ExtractedModel.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <new>
#include <string>
#include <utility>

namespace Core::Operations {

using Model::Automaton::TotalVolume;
using Model::ModelExtraction::CantileverModelRule;
using Model::ModelExtraction::CantileverStructure;
using Model::ModelExtraction::CuboidDecomposer;
using Model::ModelExtraction::ExtractedModel;

namespace {

/// Cells between the volume and the beams that are shown beside it.
constexpr double Gap = 10.0;

} // namespace

RunModelExtraction::RunModelExtraction(Workspace *workspace)
    : Operation("Extract Model", Id),
      m_workspace(workspace)
{}

RunModelExtraction::~RunModelExtraction() = default;

void RunModelExtraction::setDialogObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_dialogObserver = std::move(observer);
}

void RunModelExtraction::setCloseObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_closeObserver = std::move(observer);
}

void RunModelExtraction::next()
{
    if (m_step != Selecting)
        return;
    if (!takeSelectedVolume()) {
        write("Select a cell volume and press Enter/Return.");
        m_workspace->interpreter().awaitEnter(this);
        m_workspace->selection().setSelectionMode(true);
        return;
    }
    write("Cell volume selected.");
    m_step = DialogOpen;
    if (m_dialogObserver)
        m_dialogObserver->update();
    m_workspace->selection().clear();
    m_workspace->selection().setSelectionMode(false);
    Util::notify(m_workspace->updateObservers());
}

bool RunModelExtraction::takeSelectedVolume()
{
    for (const auto &object : m_workspace->pointer().selectedObjects()) {
        m_volume = boost::dynamic_pointer_cast<TotalVolume>(object);
        if (m_volume)
            return true;
    }
    return false;
}

void RunModelExtraction::runPreprocessing()
{
    if (m_step != DialogOpen || m_extractedModel)
        return;
    m_volume->painter().setHidden(true);
    try {
        CuboidDecomposer decomposer(m_volume.get());
        decomposer.run();
        m_extractedModel = boost::make_shared<ExtractedModel>(decomposer.envelopes());
    } catch (const std::bad_alloc &) {
        m_volume->painter().setHidden(false);
        write("The boxes of the cell volume do not fit into memory.");
        return;
    }
    m_shownModel = m_extractedModel;
    m_workspace->document().addObject(m_shownModel);
    Util::notify(m_workspace->updateObservers());
}

void RunModelExtraction::runFeatureDetection()
{
    if (m_step != DialogOpen || !m_extractedModel || m_beamModel)
        return;
    CantileverModelRule rule;
    m_structure = rule.extract(*m_extractedModel);
    if (rule.beams().empty())
        return;
    m_beamModel = boost::make_shared<ExtractedModel>(rule.beams());
    const double distance = static_cast<double>(m_volume->cellSizeX()) * (m_volume->sizeX() + Gap);
    m_beamModel->translate({distance, 0.0, 0.0});
    m_workspace->document().addObject(m_beamModel);
    Util::notify(m_workspace->updateObservers());
}

QString RunModelExtraction::netlist()
{
    if (!m_structure)
        return {};
    if (const auto cantilever = boost::dynamic_pointer_cast<CantileverStructure>(m_structure))
        for (const std::uint32_t material : cantilever->unknownMaterials())
            write("Material " + std::to_string(material) +
                  " has no density and no Young modulus in the netlist.");
    return m_structure->netlist();
}

void RunModelExtraction::cancel()
{
    if (m_step == DialogOpen) {
        m_step = Leaving;
        if (m_closeObserver)
            m_closeObserver->update();
        removeModels();
    }
    m_workspace->interpreter().clearRequest();
    m_workspace->dropOperation();
}

void RunModelExtraction::end()
{
    if (m_step != DialogOpen)
        return;
    m_step = Leaving;
    removeModels();
    write("Model extracted.");
    m_workspace->interpreter().clearRequest();
    m_workspace->finishOperation();
}

void RunModelExtraction::removeModels()
{
    for (const auto &model : {m_shownModel, m_beamModel})
        if (model)
            m_workspace->document().removeObject(model);
    m_volume->painter().setHidden(false);
    Util::notify(m_workspace->updateObservers());
}

void RunModelExtraction::write(const std::string &text)
{
    m_workspace->interpreter().writeMessage("Model Extraction: " + text);
}

} // namespace Core::Operations
