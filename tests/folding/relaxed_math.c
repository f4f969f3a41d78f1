// RUN: %krtparse --c99 --fp_mode=relaxed --no_warnings --i_output_file=%t.if %s && %ifdump %t.if > %t.dump && %FileCheck %s < %t.dump
// RUN: %krtparse --c99 --no_warnings --i_output_file=%t.strict.if %s && %ifdump %t.strict.if > %t.dump && %FileCheck %s --check-prefix=STRICT < %t.dump
// In relaxed arithmetic a library function of double gives way to that of float
// when its value and its arguments are floats.
// STRICT-NOT: CALL:float
double sqrt(double), pow(double, double), frexp(double, int *), sin(double), fabs(double);
float sqrtf(float), powf(float, float), frexpf(float, int *), fabsf(float);
int ilogb(double), ilogbf(float);
double cos(double);
int cosf;
double fabs(double d) { return d; }
float x, y, z;
double d;
int n;
float f(void) {
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:float {{.*}} sqrtf) (NAME:float x))
  y = sqrt(x);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:float {{.*}} sqrtf) (NAME:float x))
  y = (float)(sqrt(x));
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:float {{.*}} powf) (COMMA:void (NAME:float x) (NAME:float z)))
  y = pow(x, z);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:float {{.*}} frexpf) (COMMA:void (NAME:float x) (UAND:int* (NAME:int n))))
  y = frexp(x, &n);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:int {{.*}} ilogbf) (NAME:float x))
  n = ilogb(x);
  // The value or an argument is a double, also one that the program asks for.
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  d = sqrt(x);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  y = sqrt((double)x);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  y = pow(x, d);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  y = pow(x, 2);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double {{.*}}(CALL:double
  y = sqrt(sqrt(x));
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  y += sqrt(x);
  // No counterpart is declared, or it is no function, or the function is the program's own.
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  y = sin(x);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  y = cos(x);
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}(CALL:double
  y = fabs(x);
  float q = sqrt(x);
  // CHECK: relaxed_math.c:[[@LINE-1]]:{{.*}}(CALL:float
  // CHECK: relaxed_math.c:[[@LINE+1]]:{{.*}}RETURN:float {{.*}}(CALL:float
  return sqrt(q);
}
