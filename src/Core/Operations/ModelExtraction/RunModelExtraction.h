#pragma once

#include "Core/Operations/Operation.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace Core {
class Workspace;
}
namespace Model {
class Object;
}
namespace Model::Automaton {
class TotalVolume;
}
namespace Model::ModelExtraction {
class ExtractedModel;
class IStructure;
} // namespace Model::ModelExtraction

namespace Core::Operations {

/// Turns a cell volume into an equivalent circuit in three steps that the user starts from a
/// dialog. The volume is hidden and the models that are found are in the document only as long as
/// the operation is current.
class RunModelExtraction final : public Operation
{
public:
    static constexpr std::uint32_t Id = 1000;

    /// The workspace is not owned.
    explicit RunModelExtraction(Workspace *workspace);
    ~RunModelExtraction() override;

    /// Opens the dialog when there is a volume.
    void setDialogObserver(boost::shared_ptr<Util::IObserver> observer);
    /// Closes the dialog.
    void setCloseObserver(boost::shared_ptr<Util::IObserver> observer);

    /// Takes the first cell volume of the selection, or asks for one.
    void next() override;
    /// Closes the dialog, takes the models out of the document, shows the volume again and leaves
    /// the workspace idle. The operation may be destroyed within this call.
    void cancel() override;
    /// What closing the dialog does: the same, and says that the model is extracted. Does nothing
    /// unless the dialog is open. The operation may be destroyed within this call.
    void end() override;

    /// The dialog's first step: shows the boxes of the volume instead of the volume. Does nothing
    /// without an open dialog, or once they are shown. If memory runs out, says so and leaves the
    /// volume shown.
    void runPreprocessing();
    /// The second step: looks for a cantilever among the boxes and shows its beams beside the
    /// volume. Does nothing before the first, or once beams are shown.
    void runFeatureDetection();
    /// The third: the text of what was found; empty if nothing was. Says on the console which
    /// materials are in it without values.
    QString netlist();

private:
    enum Step : std::uint32_t
    {
        Selecting = 0,
        DialogOpen = 1,
        Leaving = 2
    };

    bool takeSelectedVolume();
    void removeModels();
    void write(const std::string &text);

    std::uint32_t m_step = Selecting;
    Workspace *m_workspace;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
    boost::shared_ptr<Model::Object> m_shownModel;
    boost::shared_ptr<Model::Object> m_beamModel;
    boost::shared_ptr<Model::ModelExtraction::ExtractedModel> m_extractedModel;
    boost::shared_ptr<Model::ModelExtraction::IStructure> m_structure;
    boost::shared_ptr<Util::IObserver> m_dialogObserver;
    boost::shared_ptr<Util::IObserver> m_closeObserver;
};

} // namespace Core::Operations
