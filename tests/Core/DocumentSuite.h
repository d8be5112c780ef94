#pragma once

#include "Core/Operations/Document/DocumentFile.h"
#include "Core/Operations/Document/OpenDocumentOperation.h"
#include "Fakes.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "Support/Volumes.h"

#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// What tests of documents share: the texts that a document is made of, answers to its dialogs, and
/// a folder of files.
namespace Documents {

using Core::Operations::OpenDocumentOperation;
using Ids = std::vector<std::uint32_t>;
using Model::Automaton::TotalVolume;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::Grid;
using Support::makeVolume;
using Util::Vector3D;

constexpr const char *Start =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Document><Header version=\"1\"/>";
constexpr const char *End = "</Document>\n";
constexpr const char *Box = "<State>1 0 3 1 0 0 1 1 </State>";

/// The default materials, as every document has them.
inline QByteArray materialElements()
{
    const struct
    {
        const char *name;
        const char *numbers;
        const char *color;
    } rows[] = {
        {"Si", "1 2329 0.28 1.88e+11", "FF7F7F7F"},
        {"Thermal Si02", "3 2200 0.17 7e+10", "FF7F7FFF"},
        {"Al (bulk)", "4 2700 0.14 7e+10", "FFB2B2B2"},
        {"Cu (bulk)", "5 8960 0.36 1.28e+11", "FFFFCC4C"},
        {"Cr (bulk)", "6 7190 0.21 2.79e+11", "FFCCCCCC"},
        {"Ni (bulk)", "7 8908 0.31 2e+11", "FFCCE5CC"},
        {"Pt (bulk)", "8 21450 0.38 1.68e+11", "FFE5E5CC"},
        {"Au (bulk)", "9 19300 0.44 7.9e+10", "FF7FFF7F"},
        {"Ti (bulk)", "10 4506 0.32 1.16e+11", "FF4C4C4C"},
        {"Photoresist +", "11 1000 0.4 1e+09", "FFFF7F7F"},
        {"Photoresist -", "12 1000 0.4 1e+09", "FFFF4CFF"},
        {"PDMS", "13 1000 0.4 1e+09", "FFFFFFFF"},
        {"N-doped Si (100)", "14 2329 0.28 1.88e+11", "FFFFFFAA"},
        {"P-doped Si (100)", "15 2329 0.28 1.88e+11", "FFAAAAFF"},
        {"Poly-Si", "16 2329 0.28 1.88e+11", "FF4C7F66"},
    };
    QByteArray all;
    for (const auto &row : rows) {
        const QList<QByteArray> numbers = QByteArray(row.numbers).split(' ');
        all += QByteArray("<Material version=\"1\" name=\"") + row.name + "\" material-id=\"" +
               numbers[0] + "\" density=\"" + numbers[1] + "\" poisson-ratio=\"" + numbers[2] +
               "\" young-modulus=\"" + numbers[3] + "\" color=\"#" + row.color + "\"/>";
    }
    return all;
}

inline QByteArray objectElement(const QByteArray &state, const QByteArray &x = "0",
                                const QByteArray &y = "0", const QByteArray &z = "0")
{
    return "<Object object-type=\"1\" size-x=\"2\" size-y=\"2\" size-z=\"2\" cellsize-x=\"1\" "
           "cellsize-y=\"1\" cellsize-z=\"1\">" +
           state + "<Position pos-x=\"" + x + "\" pos-y=\"" + y + "\" pos-z=\"" + z +
           "\"/></Object>";
}

inline QByteArray elementOf(std::uint32_t id, const QByteArray &name, const QByteArray &density)
{
    return "<Material version=\"1\" name=\"" + name + "\" material-id=\"" + QByteArray::number(id) +
           "\" density=\"" + density +
           "\" poisson-ratio=\"0.25\" young-modulus=\"2\" color=\"#FF00FF7F\"/>";
}

/// Differs from run to run; tests print it with SCOPED_TRACE.
inline unsigned randomSeed()
{
    const unsigned seed = std::random_device()();
    testing::Test::RecordProperty("seed", std::to_string(seed));
    return seed;
}

/// Answers the modal dialogs that come up while it lives, and counts them.
class Answerer final
{
public:
    explicit Answerer(std::function<void(QWidget &)> answer) : m_answer(std::move(answer))
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (!dialog || !dialog->isVisible() || dialog == m_last)
                return;
            m_last = dialog;
            ++m_count;
            m_answer(*dialog);
        });
        m_timer.start(5);
    }
    int count() const { return m_count; }

private:
    std::function<void(QWidget &)> m_answer;
    QTimer m_timer;
    QPointer<QWidget> m_last;
    int m_count = 0;
};

/// Enters the name into the open file dialog and leaves by its button.
inline void choose(QWidget &dialog, const QString &fileName)
{
    dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName);
    dynamic_cast<QDialog &>(dialog).accept();
}

/// Every test finds the default materials, an idle workspace and an empty folder.
class DocumentSuite : public Fakes::WorkspaceSuite
{
protected:
    void TearDown() override
    {
        MaterialFactory::instance()->loadDefaultMaterials();
        OpenDocumentOperation::materialMap().clear();
        OpenDocumentOperation::setMaterialConflictObserver(nullptr);
        OpenDocumentOperation::setObserver(nullptr);
        OpenDocumentOperation::setFileName(QString());
        WorkspaceSuite::TearDown();
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    static void add(const Grid &grid, const Ids &ids, const Vector3D &place = Vector3D())
    {
        const auto volume = makeVolume(grid, ids);
        volume->translate(place);
        workspace().document().addObject(volume);
    }

    static QByteArray written()
    {
        QBuffer device;
        device.open(QIODevice::WriteOnly);
        EXPECT_TRUE(Core::Operations::writeDocument(device, workspace()));
        return device.data();
    }

    static bool read(QByteArray xml)
    {
        QBuffer device(&xml);
        device.open(QIODevice::ReadOnly);
        return Core::Operations::readDocument(device, workspace());
    }

    static bool readBody(const QByteArray &body) { return read(Start + body + End); }

    static std::vector<boost::shared_ptr<TotalVolume>> volumes()
    {
        std::vector<boost::shared_ptr<TotalVolume>> found;
        for (const auto &object : workspace().document().objects())
            found.push_back(boost::dynamic_pointer_cast<TotalVolume>(object));
        return found;
    }

    static Ids cells(std::size_t volume = 0) { return Support::materialsOf(*volumes().at(volume)); }

    void put(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Starts the operation as its menu entry does.
    template <typename Operation>
    boost::shared_ptr<Operation> started(boost::shared_ptr<Util::IObserver> observer)
    {
        const auto operation = boost::make_shared<Operation>(&workspace());
        if constexpr (std::is_same_v<Operation, OpenDocumentOperation>)
            OpenDocumentOperation::setObserver(observer);
        else
            operation->setObserver(observer);
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [operation](std::uint32_t) { return operation; }));
        workspace().activate(1);
        return operation;
    }

    QTemporaryDir m_folder;
};

} // namespace Documents
