// Releasing chains of objects that each hold the next one strongly: a class
// its superclass, a declaration the one it overrides.
#ifndef ORV_CORE_RELEASECHAIN_H
#define ORV_CORE_RELEASECHAIN_H

#include <boost/shared_ptr.hpp>

#include <utility>

namespace NVRNORV20 {

/// Empties link. Where that would destroy the next object of the chain, and
/// with it the one after, and so on, the next object's own link is taken
/// out first, so that a chain of any length is released in a loop rather
/// than by destructors nested as deep as the chain is long.
template <class TImpl, class TInterface>
void ReleaseChain(boost::shared_ptr<TInterface> &link,
                  boost::shared_ptr<TInterface> TImpl::*member) {
  boost::shared_ptr<TInterface> next = std::move(link);
  while (next && next.use_count() == 1) {
    auto *impl = dynamic_cast<TImpl *>(next.get());
    if (!impl)
      break;
    boost::shared_ptr<TInterface> after = std::move(impl->*member);
    next = std::move(after); // destroys the object whose link was taken
  }
}

} // namespace NVRNORV20

#endif
