#pragma once

#include "Core/Operations/Operation.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}

namespace Core::Operations {

/// Writes the document to its file, and asks for one where it has none. Without an answer the
/// operation is dropped.
class SaveDocumentOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 9;

    /// The workspace is not owned.
    explicit SaveDocumentOperation(Workspace *workspace);

    /// Told after saving.
    void setObserver(boost::shared_ptr<Util::IObserver> observer);

    void next() override;
    void cancel() override;
    void end() override;

private:
    Workspace *m_workspace;
    QString m_fileName;
    boost::shared_ptr<Util::IObserver> m_observer;
};

} // namespace Core::Operations
