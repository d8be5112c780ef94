#include "UI/OperationMapper.h"

#include <QAction>

namespace Ui {

OperationMapper::OperationMapper(QObject *parent) : QObject(parent), m_mapper(this)
{
    connect(&m_mapper, SIGNAL(mapped(const QString &)), this, SIGNAL(activated(const QString &)));
}

void OperationMapper::map(QAction *action, std::uint32_t operationId)
{
    map(action, QString::number(operationId));
}

void OperationMapper::map(QAction *action, const QString &text)
{
    connect(action, SIGNAL(triggered()), &m_mapper, SLOT(map()));
    m_mapper.setMapping(action, text);
}

} // namespace Ui
