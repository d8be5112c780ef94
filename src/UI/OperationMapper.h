#pragma once

#include <QObject>
#include <QSignalMapper>
#include <QString>

#include <cstdint>

class QAction;

namespace Ui {

/// Turns the triggering of a menu action into its text: an operation id, or the name of a view.
class OperationMapper final : public QObject
{
    Q_OBJECT

public:
    explicit OperationMapper(QObject *parent = nullptr);

    /// The action stands for the decimal text of the number.
    void map(QAction *action, std::uint32_t operationId);
    void map(QAction *action, const QString &text);

Q_SIGNALS:
    void activated(const QString &operationId);

private:
    QSignalMapper m_mapper;
};

} // namespace Ui
