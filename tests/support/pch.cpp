// The translation unit that precompiles GoogleTest and GoogleMock for every test
// binary (tests/CMakeLists.txt: stbav_test_pch); it has no code of its own.
