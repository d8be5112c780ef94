#pragma once

#include "Util/IObserver.h"

namespace Ui {
class MainWindow;
}

namespace Ui::Observers {

/// Shows the name of the document's file in the title of its window, which is not owned.
class DocumentSavedObserver final : public Util::IObserver
{
public:
    explicit DocumentSavedObserver(MainWindow *window);

    void update() override;

private:
    MainWindow *m_window;
};

} // namespace Ui::Observers
