#include "UI/Observers/UpdateObserver.h"

namespace Ui::Observers {

UpdateObserver::UpdateObserver() = default;

void UpdateObserver::update()
{
    Q_EMIT updateGL();
}

} // namespace Ui::Observers
