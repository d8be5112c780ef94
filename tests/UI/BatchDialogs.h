#pragma once

#include "Support/DialogAnswer.h"
#include "UI/BatchRun/ProcessData.h"
#include "UI/BatchRun/ProcessListArchiver.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QProgressBar>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTreeWidget>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

/// What the tests of batch runs share: the dialog "Batch Run" as a user sees it.
namespace BatchDialogs {

using Support::DialogAnswer;

inline QTreeWidget &tree(const QWidget &dialog)
{
    auto *found = dialog.findChild<QTreeWidget *>("trwProcesses");
    if (!found)
        throw std::runtime_error("no list of steps");
    return *found;
}

inline QProgressBar &bar(const QWidget &dialog)
{
    return *dialog.findChild<QProgressBar *>("progressBar");
}

inline void click(const QWidget &dialog, const char *name)
{
    auto *button = dialog.findChild<QPushButton *>(QLatin1String(name));
    if (!button)
        throw std::runtime_error(std::string("no button ") + name);
    QTest::mouseClick(button, Qt::LeftButton);
}

/// The texts of the steps.
inline QStringList steps(const QWidget &dialog)
{
    QStringList texts;
    for (int i = 0; i < tree(dialog).topLevelItemCount(); ++i)
        texts << tree(dialog).topLevelItem(i)->text(1);
    return texts;
}

/// Waits until the bar shows that many steps. It may show the last one before the run is over, and
/// before the surfaces are built.
inline bool waitForBar(const QWidget &dialog, int value)
{
    return QTest::qWaitFor([&] { return bar(dialog).value() == value; }, 60000);
}

inline QString listFile(const QString &name)
{
    return QDir::current().filePath(name);
}

inline void save(const std::vector<Ui::ProcessData> &list, const QString &name)
{
    if (!Ui::ProcessListArchiver(list).saveProcessList(listFile(name)))
        throw std::runtime_error("cannot save " + name.toStdString());
}

inline std::vector<Ui::ProcessData> load(const QString &name)
{
    std::vector<Ui::ProcessData> list;
    if (!Ui::ProcessListArchiver().loadProcessList(listFile(name), list))
        throw std::runtime_error("cannot load " + name.toStdString());
    return list;
}

/// "name: type, value, visible" for each parameter, in the order of the names.
inline QStringList parametersOf(Ui::ProcessData &step)
{
    QStringList texts;
    const auto parameters = step.parameters();
    for (auto entry = parameters.begin(); entry != parameters.end(); ++entry) {
        QString type = QString::fromLatin1(entry.value().typeName());
        QString value = entry.value().toString();
        if (entry.value().canConvert<std::vector<bool>>()) {
            type = "mask";
            value.clear();
            for (const bool bit : entry.value().value<std::vector<bool>>())
                value += bit ? '1' : '0';
        } else if (entry.value().canConvert<Util::Vector3D>()) {
            const auto vector = entry.value().value<Util::Vector3D>();
            value = QString("(%1 %2 %3)").arg(vector[0]).arg(vector[1]).arg(vector[2]);
        }
        texts << QString("%1: %2, %3, %4")
                     .arg(entry.key(), type, value,
                          step.isVisible(entry.key()) ? "visible" : "hidden");
    }
    return texts;
}

/// A step whose parameters are all hidden.
inline Ui::ProcessData step(std::int32_t type,
                            const std::vector<std::pair<const char *, QVariant>> &parameters)
{
    Ui::ProcessData made(type);
    for (const auto &[name, value] : parameters)
        made.setParameter(QLatin1String(name), value, false);
    return made;
}

inline Ui::ProcessData substrate(unsigned sizeX, unsigned sizeY, unsigned sizeZ, unsigned height)
{
    return step(11, {{"MaterialId", 1u},
                     {"Lower Left Front Corner", QVariant::fromValue(Util::Vector3D())},
                     {"Volume Size X", sizeX},
                     {"Volume Size Y", sizeY},
                     {"Volume Size Z", sizeZ},
                     {"SphericalSubstrate", false},
                     {"Substrate Size X", sizeX},
                     {"Substrate Size Y", sizeY},
                     {"Substrate Size Z", height},
                     {"Substrate Delta X", 0u},
                     {"Substrate Delta Y", 0u},
                     {"Substrate Delta Z", 0u}});
}

inline Ui::ProcessData pour(unsigned material, unsigned height)
{
    return step(9, {{"MaterialId", material}, {"Maximum Height", height}});
}

inline Ui::ProcessData deposit(unsigned material, double thickness)
{
    return step(4, {{"MaterialId", material}, {"Thickness", thickness}});
}

inline Ui::ProcessData picture(const QString &file)
{
    return step(10, {{"Filename", file}});
}

} // namespace BatchDialogs
