#pragma once

#include <QApplication>
#include <QColorDialog>
#include <QObject>
#include <QTimer>

#include <functional>
#include <utility>

/// What tests of dialogs that ask for a colour share.
namespace ColorDialogs {

/// Looks for a modal colour dialog while it lives, and hands the first one to the given function,
/// which has to close it.
class ColorDialogDriver final
{
public:
    explicit ColorDialogDriver(std::function<void(QColorDialog &)> drive)
        : m_drive(std::move(drive))
    {
        poll();
    }

    bool found() const { return m_found; }

private:
    void poll()
    {
        QTimer::singleShot(5, &m_context, [this] {
            auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            if (dialog == nullptr) {
                poll();
                return;
            }
            m_found = true;
            m_drive(*dialog);
        });
    }

    std::function<void(QColorDialog &)> m_drive;
    bool m_found = false;
    QObject m_context;
};

} // namespace ColorDialogs
