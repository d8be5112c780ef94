#pragma once

class QColor;
class QString;
class QTableView;
class QWidget;

namespace Support {

/// Cells of a table in a dialog, edited with mouse and keys as a user does. What is not possible
/// throws std::runtime_error.

void typeIntoCell(QTableView &table, int row, int column, const QString &text);
/// Of a cell whose editor is a colour dialog; `dialog` holds the table.
void pickCellColor(QWidget &dialog, QTableView &table, int row, int column, const QColor &color);

} // namespace Support
