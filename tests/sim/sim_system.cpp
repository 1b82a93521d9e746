#include "sim/sim_system.h"

namespace Corvetape {

SimSingleInstance::~SimSingleInstance() {
    if (Place->Holder == this) Place->Holder = nullptr;
}

bool SimSingleInstance::Claim() {
    if (Place->Holder == nullptr) Place->Holder = this;
    return Place->Holder == this;
}

void SimSingleInstance::ActivateOther() {
    if (Place->Holder != nullptr && Place->Holder != this) ++Place->Activations;
}

}  // namespace Corvetape
