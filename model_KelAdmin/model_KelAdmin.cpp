#include "model_KelAdmin.h"

Model_KelAdmin::Model_KelAdmin() = default;
