#include "core/organizer/topics/TopicCategorizerFactory.h"

#include "core/platform/TopicModel.h"

namespace orvane {

std::string TopicCategorizerFactory::unavailableReason() const {
  return m_model.unavailableReason();
}

bool TopicCategorizerFactory::isOnDeviceModelAvailable() const {
  return m_model.isAvailable();
}

TopicCategorizing* TopicCategorizerFactory::categorizer() {
  return isOnDeviceModelAvailable() ? &m_categorizer : nullptr;
}

}  // namespace orvane
