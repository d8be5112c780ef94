#pragma once

#include <QString>

#include <functional>
#include <vector>

class QColor;
class QWidget;

namespace Support {

/// What a user does in one modal dialog: fills in widgets, found by their object names, with key
/// and mouse events, and leaves by a button. The steps run in the order in which they were added.
/// A widget that is not there, or cannot be used, is a failure with a text.
class DialogAnswer final
{
public:
    /// Types into a spin box or a line edit.
    DialogAnswer &type(const QString &widget, const QString &text);
    /// Chooses the item with that text.
    DialogAnswer &choose(const QString &widget, const QString &item);
    /// Clicks a check box or radio button, if its state differs.
    DialogAnswer &check(const QString &widget, bool checked = true);
    /// Clicks a button.
    DialogAnswer &click(const QString &widget);
    /// Enters the name into the open file dialog.
    DialogAnswer &fileName(const QString &name);
    /// Picks a colour in the open colour dialog.
    DialogAnswer &color(const QColor &color);
    /// Anything else; gets the dialog.
    DialogAnswer &look(const std::function<void(QWidget &)> &step);

    /// Leaves the dialog by its Ok (Save, Open) or its Cancel button, after all other steps.
    DialogAnswer &accept();
    DialogAnswer &reject();

    /// Runs the steps; throws std::runtime_error at the first that is not possible.
    void playIn(QWidget &dialog) const;

private:
    DialogAnswer &add(const std::function<void(QWidget &)> &step);

    std::vector<std::function<void(QWidget &)>> m_steps;
};

} // namespace Support
