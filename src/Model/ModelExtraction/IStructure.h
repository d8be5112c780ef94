#pragma once

#include <QString>

namespace Model::ModelExtraction {

/// What a rule has found in an extracted model.
class IStructure
{
public:
    virtual ~IStructure() = default;
    /// The structure as an electrical network, in the text that a circuit simulator reads.
    virtual QString netlist() const = 0;

protected:
    IStructure() = default;
    IStructure(const IStructure &) = default;
    IStructure &operator=(const IStructure &) = default;
};

} // namespace Model::ModelExtraction
