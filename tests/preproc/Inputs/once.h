#pragma once
once_text
