'use strict';

// Answers that a network or a broken server gives, in place of the right one. A fault is asked for by
// `{"kind": …, "method"?, "path"?, "times"?, …}` and holds for the next `times` requests (1 unless told; 0 for all
// that follow) with that method whose path starts so.
//
//   status      `status`, `body`?     the backend is not called
//   html        a page with 200       the backend is not called
//   garbage     200 and no JSON       the backend is not called
//   redirect    `status`?, `location` the backend is not called
//   close       the connection ends   the backend is not called
//   lost        the backend has done it, and the connection ends without an answer
//   half        the right answer's head and half of its body, then the end
//   drip        the right answer, `milliseconds` between one byte and the next

const kKinds = ['status', 'html', 'garbage', 'redirect', 'close', 'lost', 'half', 'drip'];
const kNeedAnswer = ['lost', 'half', 'drip'];

class Faults {
  #waiting = [];

  add(fault) {
    if (!kKinds.includes(fault.kind)) {
      throw new TypeError(`there is no fault '${fault.kind}', but ${kKinds.join(', ')}`);
    }
    this.#waiting.push({ times: 1, ...fault });
  }

  clear() {
    this.#waiting = [];
  }

  /** The fault that this request meets, if any. */
  take(request) {
    const fault = this.#waiting.find(
      ({ method, path }) =>
        (!method || method === request.method) && (!path || request.url.pathname.startsWith(path)),
    );
    if (fault && fault.times > 0 && --fault.times === 0) {
      this.#waiting.splice(this.#waiting.indexOf(fault), 1);
    }
    return fault;
  }
}

async function meet(fault, response, rightAnswer) {
  const right = kNeedAnswer.includes(fault.kind) ? await rightAnswer() : null;
  const body = right && Buffer.from(right.body);
  switch (fault.kind) {
    case 'status': {
      const message = `This is the answer ${fault.status} that was asked for`;
      const text = fault.body ?? JSON.stringify({ code: 'LOOPBACK', details: null, hint: null, message });
      response.writeHead(fault.status, { 'Content-Type': 'application/json; charset=utf-8' }).end(text);
      return;
    }
    case 'html':
      response.writeHead(200, { 'Content-Type': 'text/html' }).end('<!DOCTYPE html><title>Sign in</title>');
      return;
    case 'garbage':
      response.writeHead(200, { 'Content-Type': 'application/json' }).end(Buffer.from('5b7b226964223aff00', 'hex'));
      return;
    case 'redirect':
      response.writeHead(fault.status ?? 302, { Location: fault.location }).end();
      return;
    case 'close':
    case 'lost':
      response.socket.destroy();
      return;
    case 'half':
      response.writeHead(right.status, { ...right.headers, 'Content-Length': body.length });
      response.write(body.subarray(0, body.length / 2), () => response.socket.destroy());
      return;
    case 'drip':
      response.writeHead(right.status, { ...right.headers, 'Content-Length': body.length });
      for (let i = 0; i < body.length && !response.destroyed; ++i) {
        response.write(body.subarray(i, i + 1));
        await new Promise((resolve) => setTimeout(resolve, fault.milliseconds ?? 1000));
      }
      response.end();
  }
}

module.exports = { Faults, meet };
