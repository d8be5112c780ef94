#include "UI/OperationFactory.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDepositionOperation.h"
#include "Core/Operations/CopyObject.h"
#include "Core/Operations/CreateSubstrateOperation.h"
#include "Core/Operations/DeleteObject.h"
#include "Core/Operations/Document/OpenDocumentOperation.h"
#include "Core/Operations/Document/SaveDocumentAsOperation.h"
#include "Core/Operations/Document/SaveDocumentOperation.h"
#include "Core/Operations/Electrodeposition/ElectrodepositionOperation.h"
#include "Core/Operations/ExtractFilm/ExtractFilm.h"
#include "Core/Operations/GlueSubstrate/GlueSubstrateOperation.h"
#include "Core/Operations/IonImplantation/IonImplantationOperation.h"
#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"
#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtchingOperation.h"
#include "Core/Operations/ModelExtraction/RunModelExtraction.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDepositionOperation.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtchingOperation.h"
#include "Core/Operations/MoveObject.h"
#include "Core/Operations/Photolithography/PhotolithographyOperation.h"
#include "Core/Operations/Planarization/PlanarizationOperation.h"
#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtchingOperation.h"
#include "Core/Operations/SelectVolumesOperation.h"
#include "Core/Operations/SiEtching/AtomisticSiWetEtchingOperation.h"
#include "Core/Operations/SiEtching/ContinousWetEtchOperation.h"
#include "Core/Operations/SiOxidation/SimpleSiOxidationOperation.h"
#include "Core/Operations/SimpleDoping/DopingOperation.h"
#include "Core/Operations/SpinCoating/SpinCoatingOperation.h"
#include "Core/Operations/Visualization/ChangeTotalVolumeVisualizationOptions.h"
#include "Core/Operations/Visualization/CutCellVolumeOperation.h"
#include "UI/MainWindow.h"
#include "UI/MainWindowPresenter.h"
#include "UI/Observers/AtomicSiBCAEtchObserver.h"
#include "UI/Observers/BatchRunObserver.h"
#include "UI/Observers/CCAWetEtchingObserver.h"
#include "UI/Observers/CVDObserver.h"
#include "UI/Observers/ChangeTotalVolumeViewOptionsObserver.h"
#include "UI/Observers/CreateSubstrateObserver.h"
#include "UI/Observers/CutCellVolumeObserver.h"
#include "UI/Observers/DocumentOpenedObserver.h"
#include "UI/Observers/DocumentSavedObserver.h"
#include "UI/Observers/DopingOptionsObserver.h"
#include "UI/Observers/ElectrodepositionObserver.h"
#include "UI/Observers/ExtractFilmObserver.h"
#include "UI/Observers/GlueSubstrateObserver.h"
#include "UI/Observers/IonImplantationOptionsObserver.h"
#include "UI/Observers/IsotropicFilmDepositionObserver.h"
#include "UI/Observers/IsotropicFilmEtchingObserver.h"
#include "UI/Observers/MooreDepositionObserver.h"
#include "UI/Observers/MooreEtchingObserver.h"
#include "UI/Observers/PhotolithographyObserver.h"
#include "UI/Observers/PlanarizationObserver.h"
#include "UI/Observers/RunModelExtractionObserver.h"
#include "UI/Observers/SiOxidationObserver.h"
#include "UI/Observers/SimpleRIEObserver.h"
#include "UI/Observers/SpinCoatingObserver.h"

#include <boost/make_shared.hpp>

namespace Ui {

using namespace Core::Operations;

namespace {

/// An operation with an observer that asks with the window as dialog parent. Where a class has one
/// slot for all its operations, each new one overwrites it: only one of a class is in progress.
template <typename Operation, typename Observer>
boost::shared_ptr<Operation> makeObserved(MainWindowPresenter &presenter)
{
    Core::Workspace *workspace = &presenter.workspace();
    const auto operation = boost::make_shared<Operation>(workspace);
    operation->setObserver(boost::make_shared<Observer>(workspace, presenter.mainWindow()));
    return operation;
}

/// The same for saving, which asks by itself.
template <typename Operation>
boost::shared_ptr<Operation> makeSaving(MainWindowPresenter &presenter)
{
    const auto operation = boost::make_shared<Operation>(&presenter.workspace());
    operation->setObserver(
        boost::make_shared<Observers::DocumentSavedObserver>(presenter.mainWindow()));
    return operation;
}

/// This one has two observers: the one that opens its dialog brings the one that closes it.
boost::shared_ptr<RunModelExtraction> makeModelExtraction(MainWindowPresenter &presenter)
{
    Core::Workspace *workspace = &presenter.workspace();
    const auto operation = boost::make_shared<RunModelExtraction>(workspace);
    operation->setDialogObserver(boost::make_shared<Observers::RunModelExtractionObserver>(
        workspace, presenter.mainWindow(), operation.get()));
    return operation;
}

} // namespace

OperationFactory::OperationFactory(MainWindowPresenter *presenter) : m_presenter(presenter) {}

boost::shared_ptr<Core::Operations::Operation> OperationFactory::create(std::uint32_t operationId)
{
    Core::Workspace *workspace = &m_presenter->workspace();
    switch (operationId) {
    case 1:
        return boost::make_shared<CopyObject>(workspace);
    case 2:
        return makeObserved<CreateSubstrateOperation, Observers::CreateSubstrateObserver>(
            *m_presenter);
    case 3:
        return makeObserved<IonImplantationOperation, Observers::IonImplantationOptionsObserver>(
            *m_presenter);
    case 4:
        return boost::make_shared<DeleteObject>(workspace);
    case 6:
        return makeObserved<ChangeTotalVolumeVisualizationOptions,
                            Observers::ChangeTotalVolumeViewOptionsObserver>(*m_presenter);
    case 7:
        return boost::make_shared<MoveObject>(workspace);
    case 8:
        return makeObserved<ExtractFilm, Observers::ExtractFilmObserver>(*m_presenter);
    case 9:
        return makeSaving<SaveDocumentOperation>(*m_presenter);
    case 10:
        return makeSaving<SaveDocumentAsOperation>(*m_presenter);
    case 11:
        OpenDocumentOperation::setObserver(boost::make_shared<Observers::DocumentOpenedObserver>());
        return boost::make_shared<OpenDocumentOperation>(workspace);
    case 12:
        return makeObserved<GlueSubstrateOperation, Observers::GlueSubstrateObserver>(*m_presenter);
    case 13:
        return makeObserved<IsotropicFilmDepositionOperation,
                            Observers::IsotropicFilmDepositionObserver>(*m_presenter);
    case 14:
        return makeObserved<IsotropicFilmEtchingOperation, Observers::IsotropicFilmEtchingObserver>(
            *m_presenter);
    case 15:
        return makeObserved<ElectrodepositionOperation, Observers::ElectrodepositionObserver>(
            *m_presenter);
    case 16:
        return makeObserved<CutCellVolumeOperation, Observers::CutCellVolumeObserver>(*m_presenter);
    case 17:
        return makeObserved<DopingOperation, Observers::DopingOptionsObserver>(*m_presenter);
    case 18:
        return makeObserved<MooreNeighborhoodDepositionOperation,
                            Observers::MooreDepositionObserver>(*m_presenter);
    case 19:
        return makeObserved<MooreNeighborhoodEtchingOperation, Observers::MooreEtchingObserver>(
            *m_presenter);
    case 20:
        return makeObserved<PhotolithographyOperation, Observers::PhotolithographyObserver>(
            *m_presenter);
    case 22:
        return makeObserved<PlanarizationOperation, Observers::PlanarizationObserver>(*m_presenter);
    case 23:
        return makeObserved<SpinCoatingOperation, Observers::SpinCoatingObserver>(*m_presenter);
    case 24:
        return makeObserved<SelectVolumesOperation, Observers::BatchRunObserver>(*m_presenter);
    case 26:
        return makeObserved<SimpleSiOxidationOperation, Observers::SiOxidationObserver>(
            *m_presenter);
    case 27:
        return makeObserved<AnisotropicFilmDepositionOperation, Observers::CVDObserver>(
            *m_presenter);
    case 28:
        return makeObserved<AtomisticSiWetEtchingOperation, Observers::AtomicSiBCAEtchObserver>(
            *m_presenter);
    case 29:
        return makeObserved<ContinousWetEtchOperation, Observers::CCAWetEtchingObserver>(
            *m_presenter);
    case 30:
        return makeObserved<SimpleReactiveIonEtchingOperation, Observers::SimpleRIEObserver>(
            *m_presenter);
    case 1000:
        return makeModelExtraction(*m_presenter);
    default:
        return {};
    }
}

} // namespace Ui
