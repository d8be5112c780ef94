#include "Model/Persistence/MaterialArchiver.h"

#include <QColor>
#include <QDebug>
#include <QLatin1String>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <array>
#include <cmath>
#include <limits>

namespace Model::Persistence {

namespace {

QString numberText(float value)
{
    return QString::number(double(value), 'g', 6);
}

/// Truncates, and does not pad to two digits: users' files have their colours in this form.
QString channelText(float channel)
{
    const float scaled = channel * 255;
    // The comparison also turns NaN away.
    const bool fits = std::abs(scaled) < float(std::numeric_limits<int>::max());
    return QString::number(fits ? int(scaled) : 0, 16).toUpper();
}

QString colorText(const float *color)
{
    return QLatin1Char('#') + channelText(color[3]) + channelText(color[0]) +
           channelText(color[1]) + channelText(color[2]);
}

std::array<float, 4> parseColor(const QStringRef &text)
{
    QColor color;
    color.setNamedColor(text);
    return {float(color.redF()), float(color.greenF()), float(color.blueF()),
            float(color.alphaF())};
}

} // namespace

Materials::Material MaterialArchiver::loadMaterial(QXmlStreamReader *reader, bool *ok)
{
    if (reader == nullptr || reader->name() != QLatin1String("Material")) {
        if (ok != nullptr) {
            *ok = false;
        }
        return Materials::Material();
    }

    Materials::Material material;
    material.setName(QString());
    const QXmlStreamAttributes attributes = reader->attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QStringRef name = attribute.name();
        const QStringRef value = attribute.value();
        qDebug() << "attribute: " << name;
        if (name == QLatin1String("name")) {
            material.setName(value.toString());
        } else if (name == QLatin1String("material-id")) {
            material.setId(value.toUInt(nullptr, 10));
        } else if (name == QLatin1String("density")) {
            material.setDensity(value.toFloat());
        } else if (name == QLatin1String("poisson-ratio")) {
            material.setPoissonRatio(value.toFloat());
        } else if (name == QLatin1String("young-modulus")) {
            material.setYoungModulus(value.toFloat());
        } else if (name == QLatin1String("color")) {
            material.setColor(parseColor(value).data());
        }
    }
    if (ok != nullptr) {
        *ok = material.id() != 0 && !material.name().isEmpty();
    }
    return material;
}

bool MaterialArchiver::saveMaterial(QXmlStreamWriter *writer, const Materials::Material &material)
{
    if (writer == nullptr) {
        return false;
    }
    writer->writeEmptyElement(QStringLiteral("Material"));
    writer->writeAttribute(QStringLiteral("version"), QStringLiteral("1"));
    writer->writeAttribute(QStringLiteral("name"), material.name());
    writer->writeAttribute(QStringLiteral("material-id"), QString::number(material.id()));
    writer->writeAttribute(QStringLiteral("density"), numberText(material.density()));
    writer->writeAttribute(QStringLiteral("poisson-ratio"), numberText(material.poissonRatio()));
    writer->writeAttribute(QStringLiteral("young-modulus"), numberText(material.youngModulus()));
    writer->writeAttribute(QStringLiteral("color"), colorText(material.color()));
    return !writer->hasError();
}

} // namespace Model::Persistence
