#pragma once

#include <boost/shared_ptr.hpp>

namespace Model::ModelExtraction {

class ExtractedModel;
class IStructure;

/// Knows how one kind of device looks among the boxes of a model.
class IModelRule
{
public:
    virtual ~IModelRule() = default;
    /// Looks for the device anew; empty if it is not there.
    virtual boost::shared_ptr<IStructure> extract(const ExtractedModel &model) = 0;

protected:
    IModelRule() = default;
    IModelRule(const IModelRule &) = default;
    IModelRule &operator=(const IModelRule &) = default;
};

} // namespace Model::ModelExtraction
