#include "FuzzSupport.h"

#include <QLocale>
#include <QXmlStreamWriter>
#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Fuzz {

using Model::Materials::Material;

namespace {

/// The texts of log lines are made all the same, so their making is tested.
void dropLogLine(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                 const QString & /*text*/)
{}

QString numberText(float value)
{
    return QString::number(static_cast<double>(value), 'g', 6);
}

int channel(const Material &material, int index)
{
    return static_cast<int>(material.color()[index] * 255);
}

/// The writer does not pad channels to two digits, so a colour with a channel below 16 does not
/// come back.
bool colorIsKept(const Material &material)
{
    for (int index = 0; index < 4; ++index)
        if (channel(material, index) < 16)
            return false;
    return true;
}

bool sameColor(const Material &first, const Material &second)
{
    for (int index = 0; index < 4; ++index)
        if (channel(first, index) != channel(second, index))
            return false;
    return true;
}

} // namespace

void require(bool holds, const char *message)
{
    if (holds)
        return;
    std::fprintf(stderr, "Required and not so: %s\n", message);
    std::abort();
}

Input::Input(const std::uint8_t *data, std::size_t size)
    : Input(QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size)))
{}

Input::Input(const QByteArray &bytes)
{
    setData(bytes);
    open(QIODevice::ReadOnly);
}

bool canBeWritten(const QString &text)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.writeEmptyElement(QStringLiteral("Text"));
    writer.writeAttribute(QStringLiteral("text"), text);
    writer.writeEndDocument();
    return !writer.hasError();
}

void requireSameMaterials(const std::vector<Material> &before, const std::vector<Material> &after)
{
    require(before.size() == after.size(), "as many materials come back as were written");
    for (std::size_t i = 0; i < before.size(); ++i) {
        const Material &first = before[i];
        const Material &second = after[i];
        require(first.id() == second.id(), "a material keeps its id");
        require(first.name() == second.name(), "a material keeps its name");
        require(numberText(first.density()) == numberText(second.density()),
                "a material keeps its density");
        require(numberText(first.poissonRatio()) == numberText(second.poissonRatio()),
                "a material keeps its Poisson ratio");
        require(numberText(first.youngModulus()) == numberText(second.youngModulus()),
                "a material keeps its Young modulus");
        require(!colorIsKept(first) || sameColor(first, second), "a material keeps its colour");
    }
}

} // namespace Fuzz

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    QLocale::setDefault(QLocale::c());
    qInstallMessageHandler(Fuzz::dropLogLine);
    return 0;
}
