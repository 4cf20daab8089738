meta:
  id: orv_measurement
  title: A measurement datagram of the ECU
  endian: le
seq:
  - id: measurement_word
    type: u4
  - id: send_mask
    type: u2
  - id: receive_mask
    type: u2
  - id: num_blocks
    type: u1
  - id: blocks
    type: sensor_block
    repeat: expr
    repeat-expr: num_blocks
types:
  sensor_block:
    seq:
      - id: sensor_id
        type: u1
      - id: num_echoes
        type: u1
      - id: echoes
        type: echo
        repeat: expr
        repeat-expr: num_echoes
  echo:
    seq:
      - id: raw_time
        type: u2
      - id: magnitude
        type: u1
      - id: second_value
        type: u1
