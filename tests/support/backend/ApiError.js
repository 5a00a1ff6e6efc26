'use strict';

// A refusal as PostgREST words it: a status and the four members of its body.

class ApiError extends Error {
  constructor(status, code, message, { details = null, hint = null } = {}) {
    super(message);
    this.status = status;
    this.body = { code, details, hint, message };
  }

  /** What PostgREST makes of an error of the database; those that the migrations can bring about. */
  static fromDatabase(error) {
    return new ApiError(statusOf(error.code), error.code, error.message, {
      details: error.detail ?? null,
      hint: error.hint ?? null,
    });
  }
}

const kStatusOfCode = {
  23503: 409, // foreign key violation
  23505: 409, // unique violation
  42501: 401, // insufficient privilege; 403 only for roles other than the anonymous one
  '42P01': 404, // undefined table
  42883: 404, // undefined function
  P0001: 400, // raised without a code
};
const kStatusOfClass = { 25: 500, 40: 500, 53: 503, 54: 500, 57: 500, 58: 500, P0: 500, XX: 500 };

function statusOf(code) {
  return kStatusOfCode[code] ?? kStatusOfClass[code.slice(0, 2)] ?? 400;
}

module.exports = { ApiError };
