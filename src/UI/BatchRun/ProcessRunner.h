#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}
namespace Model::Automaton {
class TotalVolume;
}

namespace Ui {

class ProcessData;
class RunProcessesDialog;

/// Runs one step of a batch list: reads its parameters and calls the engine that the operation of
/// the process calls, with no operation, dialog or message. Built for each step, on the thread that
/// runs it. Where a volume is created or a picture is saved, that thread waits for the dialog's.
class ProcessRunner final
{
public:
    /// Step, dialog and workspace are not owned.
    ProcessRunner(const ProcessData *step,
                  const boost::shared_ptr<Model::Automaton::TotalVolume> &volume,
                  RunProcessesDialog *dialog, Core::Workspace *workspace);

    /// 0 for a step that is done, also one of an unknown type; 1 for one that lacks a parameter, or
    /// the volume; 2 for one with a parameter that does not convert, or with a volume that is too
    /// large. In the last two cases nothing has changed. Throws what the engines throw where the
    /// memory does not suffice.
    int run();

private:
    int runPhotolithography();
    int runSiWetEtching();
    int runMooreDeposition();
    int runMooreEtching();
    int runCvd();
    int runIsotropicEtching();
    int runPlanarization();
    int runElectroplating();
    int runDoping();
    int runSpinCoating();
    int runSaveImage();
    int runCreateSubstrate();
    int runPvd();
    int runSimpleRie();
    int runIonImplantation();
    int runSiOxidation();

    /// What the object records keep of the silicon lattice.
    enum class Lattice
    {
        Untouched,
        Stale,
        Fresh
    };
    void record(std::uint32_t operationId, Lattice lattice);

    const ProcessData *m_step;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
    RunProcessesDialog *m_dialog;
    Core::Workspace *m_workspace;
};

} // namespace Ui
