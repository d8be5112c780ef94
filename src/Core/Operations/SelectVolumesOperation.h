#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace Core {
class Workspace;
}
namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Opens the batch run, with a cell volume that the user selects or, at the answer "N", without.
class SelectVolumesOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 24;

    /// The workspace is not owned.
    explicit SelectVolumesOperation(Workspace *workspace);

    /// The one observer of the class, told when there is an answer.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// The selected volume; empty while there is no answer, and without a volume.
    boost::shared_ptr<Model::Automaton::TotalVolume> volume() const;

    void next() override;
    void cancel() override;
    /// Returns when the observer does. An operation that was dropped meanwhile has ended.
    void end() override;

private:
    static boost::shared_ptr<Util::IObserver> s_observer;

    Workspace *m_workspace;
    ProcessSequence m_sequence;
    bool m_finished = false;
    std::string m_answer;
};

} // namespace Core::Operations
