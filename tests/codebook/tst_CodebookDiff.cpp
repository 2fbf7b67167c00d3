#include "CodebookTestSupport.h"

#include <gtest/gtest.h>
