#include "ui/kit/news.h"
