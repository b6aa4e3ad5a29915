#include "dataconv/CvsnRootNamespace.h"

#include "dataconv/CvsnRegistryNode.h"

namespace Quillon::DataConv {

boost::shared_ptr<CvsnRegistryNode> CvsnRootNamespace::instance() {
    static const boost::shared_ptr<CvsnRegistryNode> root(new CvsnRegistryNode);
    return root;
}

} // namespace Quillon::DataConv
