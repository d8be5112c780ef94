#pragma once

#include "Core/Operations/Operation.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}

namespace Core::Operations {

/// Asks for a file and writes the document to it. Without an answer nothing is written, and the
/// operation counts as finished all the same.
class SaveDocumentAsOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 10;

    /// The workspace is not owned.
    explicit SaveDocumentAsOperation(Workspace *workspace);

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
