#pragma once

#include "Support/Volumes.h"
#include "Support/WindowDriver.h"

#include "Core/Operations/ModelExtraction/RunModelExtraction.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Document.h"
#include "UI/MainWindow.h"
#include "UI/Operations/ExtractModelDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTest>

#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <vector>

/// A main window with a volume of 60 x 40 x 16 cells, on which model extractions run as a user runs
/// them.
class ExtractionWindow : public testing::Test
{
protected:
    static constexpr const char *Selected = "Model Extraction: Cell volume selected.";
    static constexpr const char *Prompted =
        "Model Extraction: Select a cell volume and press Enter/Return.";
    static constexpr const char *Extracted = "Model Extraction: Model extracted.";

    ExtractionWindow() { use(cantilever); }

    /// A beam of aluminium, 25 by 6 by 3 cells, on the side of a block of silicon.
    static std::uint32_t cantilever(std::uint32_t x, std::uint32_t y, std::uint32_t z)
    {
        if (x < 20 && z < 9)
            return 1;
        return x < 45 && y >= 17 && y < 23 && z >= 6 && z < 9 ? 2 : 0;
    }
    /// C = 450 cells * 2.00129819772e-17 * 2700 * 33 / 140 and L = 25^3 / (3 E 27 * 6 / 12).
    static QString cantileverNetlist()
    {
        return QStringLiteral("Model extracted by Lithara\n"
                              "c1 1 0 5.73158e-12 \n"
                              "l1 1 0 5.51146e-09 \n"
                              ".end \n");
    }

    /// The document's one object.
    void use(const Support::MaterialRule &rule)
    {
        m_driver.window().makeViewCurrent();
        auto &document = m_driver.workspace().document();
        document.reset();
        const auto volume = Support::makeVolume({60, 40, 16, 1.0f, 1.0f, 1.0f}, rule);
        volume->painter().rebuild();
        document.addObject(volume);
        m_driver.settle();
    }

    /// The operation has an id and no menu entry.
    void activate()
    {
        m_driver.window().presenter().operationActivated(QStringLiteral("1000"));
        m_driver.settle();
    }
    void start()
    {
        m_driver.trigger("actionSelect");
        m_driver.click(m_driver.viewCenter() + QPoint(20, -15));
        activate();
        m_dialog = findDialog();
        if (!m_dialog)
            throw std::runtime_error("no dialog");
    }
    /// Clicks the button of a step, and answers what it asks.
    void step(int number, const std::vector<Support::DialogAnswer> &answers = {})
    {
        static const char *const names[] = {"btnStepOne", "btnStepTwo", "btnStepThree"};
        auto *button = m_dialog->findChild<QAbstractButton *>(QLatin1String(names[number - 1]));
        m_driver.answering(answers, [&] { QTest::mouseClick(button, Qt::LeftButton); });
    }

    Ui::Operations::ExtractModelDialog *findDialog()
    {
        for (auto *dialog : m_driver.window().findChildren<Ui::Operations::ExtractModelDialog *>())
            if (dialog->isVisible())
                return dialog;
        return nullptr;
    }
    /// Runs what was put off, also the deletion of dialogs.
    void settle()
    {
        m_driver.settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    std::size_t objectCount() { return m_driver.workspace().document().objects().size(); }
    boost::shared_ptr<Core::Operations::RunModelExtraction> current()
    {
        return boost::dynamic_pointer_cast<Core::Operations::RunModelExtraction>(
            m_driver.workspace().currentOperation());
    }
    QStringList lastLines(int count)
    {
        const QStringList lines = m_driver.consoleLines();
        return lines.mid(lines.size() - count);
    }

    Support::WindowDriver m_driver;
    QPointer<Ui::Operations::ExtractModelDialog> m_dialog;
};
