#include "donation/view/DonationModel.h"

namespace velloran {

DonationModel::DonationModel(DonationManager& manager, QObject* parent)
    : QObject(parent),
      manager_(manager),
      subscription_(manager.isPromptVisible.stream().removeDuplicates().subscribe(
          [this](const bool&) { emit promptVisibleChanged(); })) {}

} // namespace velloran
