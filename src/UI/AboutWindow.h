#pragma once

#include <QDialog>

#include <memory>

namespace Ui {

class AboutForm;

/// Tells what the program is and who wrote it.
class AboutWindow final : public QDialog
{
    Q_OBJECT

public:
    explicit AboutWindow(QWidget *parent = nullptr);
    ~AboutWindow() override;

private:
    std::unique_ptr<AboutForm> m_form;
};

} // namespace Ui
