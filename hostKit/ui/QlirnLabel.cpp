#include "ui/QlirnLabel.h"
