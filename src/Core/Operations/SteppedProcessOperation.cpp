#include "Core/Operations/SteppedProcessOperation.h"

#include "Util/IObserver.h"

namespace Core::Operations {

SteppedProcessOperation::~SteppedProcessOperation() = default;

void SteppedProcessOperation::next()
{
    if (m_step != 0 || !sequence().selectVolume())
        return;
    m_step = 1;
    // A copy: the dialog may end the operation, which holds the observer.
    const boost::shared_ptr<Util::IObserver> held = observer();
    if (held) {
        m_step = 2;
        held->update();
    }
}

} // namespace Core::Operations
